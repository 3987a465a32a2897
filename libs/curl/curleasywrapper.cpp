#include "curl/curleasywrapper.h"

#include "base/failure.h"
#include "base/stringconversion.h"
#include "curl/longhead.h"
#include "curl/transfercallbacks.h"
#include "http/loggableuri.h"
#include "http/uri.h"

#include <curl/curl.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace quillon {

namespace {

constexpr char const* allowedProtocols = "http,https";

CURL* makeHandle() {
    CURL* const handle = curl_easy_init();
    if (!handle)
        fail<ECurl>("DownloadManager", "downloadFileTo", "Cannot init CURL context",
                    {"libs/curl/curlwrapper.cpp", 183});
    return handle;
}

// libcurl asks at least once a second, also while it looks up a name or waits for the peer.
int isSet(void* flag, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    return *static_cast<std::atomic<bool> const*>(flag) ? 1 : 0;
}

// libcurl quotes a proxy of the environment that it cannot use as it stands there, password and all, and of a
// long one only as much as its buffer holds.
String withoutProxySecrets(String const& details) {
    unsigned const quote = details.find(" '"); // and not the one in "Couldn't"
    if (quote == String::npos)
        return details;
    String const quoted = details.range(quote + 2);
    return details.range(0, quote + 2) + (quoted.ends("'") ? http::loggableUri(quoted) : String("..."));
}

/// Whether `details` are about a proxy, as a connection is to some other host than the one that was asked.
bool isOfProxy(String const& details, RequestUrl const& url) {
    String const failed("Failed to connect to ");
    return details.starts("Unsupported proxy ") ||
           (details.starts(failed) && !details.starts(failed + url.getHost() + " port "));
}

/// Sets options until one is refused.
class Options {
public:
    explicit Options(CURL* handle) : m_handle(handle) {}

    template <class T>
    Options& set(CURLoption option, T value) {
        if (m_result == CURLE_OK)
            m_result = curl_easy_setopt(m_handle, option, value);
        return *this;
    }
    CURLcode result() const { return m_result; }

private:
    CURL* m_handle;
    CURLcode m_result = CURLE_OK;
};

} // namespace

void CurlEasyWrapper::Cleanup::operator()(CURL* handle) const {
    curl_easy_cleanup(handle);
}

CurlEasyWrapper::CurlEasyWrapper() : m_handle(makeHandle()), m_cookies(m_handle.get()) {
    static_assert(sizeof m_errorBuffer >= CURL_ERROR_SIZE);
    CURLcode const result = Options(m_handle.get())
                                .set(CURLOPT_ERRORBUFFER, m_errorBuffer)
                                .set(CURLOPT_NOSIGNAL, 1L)
                                .set(CURLOPT_FOLLOWLOCATION, 0L)
                                .set(CURLOPT_PROTOCOLS_STR, allowedProtocols)
                                .set(CURLOPT_REDIR_PROTOCOLS_STR, allowedProtocols)
                                .result();
    if (result != CURLE_OK)
        fail<ECurl>("CurlEasyWrapper", "CurlEasyWrapper", "Cannot set up CURL context",
                    std::source_location::current(), result);
    // A name server that does not answer holds up neither cancelling nor the time limit: the thread that asks
    // it is left to end by itself. A libcurl that does not know the option waits for it, as it always did.
    curl_easy_setopt(m_handle.get(), CURLOPT_QUICK_EXIT, 1L);
}

CurlEasyWrapper::~CurlEasyWrapper() = default;

bool CurlEasyWrapper::request(String const& url, IWriter& out, String const& postData) {
    return request(url, &writeToWriter, &out, postData);
}

bool CurlEasyWrapper::request(String const& url, Memory& out, String const& postData) {
    MemoryTarget target{out};
    return transfer(url, &writeToMemory, &target, postData, m_timeLimits.whole);
}

bool CurlEasyWrapper::request(String const& url, WriteCallback callback, void* callbackData,
                              String const& postData) {
    return transfer(url, callback, callbackData, postData, std::chrono::seconds(0)); // 0: no limit
}

bool CurlEasyWrapper::transfer(String const& url, WriteCallback callback, void* callbackData,
                               String const& postData, std::chrono::seconds whole) {
    m_lastRespHeader = http::ResponseHeader();
    m_errorBuffer[0] = '\0'; // not every failure fills it
    m_lastVerifyResult = 0;
    m_lastFacts = {};
    m_url.emplace(url);
    m_lastErrorCode = checkTransfer();
    if (m_lastErrorCode == CURLE_OK)
        m_lastErrorCode = setUpTransfer(callback, callbackData, postData);
    if (m_lastErrorCode == CURLE_OK)
        m_lastErrorCode = perform(url.length(), whole);
    if (m_lastErrorCode != CURLE_OK)
        readFacts();
    if (m_lastErrorCode != CURLE_OK)
        log(ERROR, "CurlEasyWrapper", "request",
            lastErrorString() + " (#" + toString(m_lastErrorCode) + ") [" + lastErrorBuf() + "]");
    return m_lastErrorCode == CURLE_OK;
}

int CurlEasyWrapper::checkTransfer() const {
    if (isCancelled())
        return CURLE_ABORTED_BY_CALLBACK;
    return m_url->getError() != CURLE_OK ? m_url->getError() : m_proxyError;
}

int CurlEasyWrapper::setUpTransfer(WriteCallback callback, void* callbackData, String const& postData) {
    Options options(m_handle.get());
    options.set(CURLOPT_CURLU, m_url->handle())
        .set(CURLOPT_WRITEFUNCTION, callback)
        .set(CURLOPT_WRITEDATA, callbackData)
        .set(CURLOPT_HEADERFUNCTION, &readHeaderLine)
        .set(CURLOPT_NOPROGRESS, m_cancelFlag ? 0L : 1L)
        .set(CURLOPT_XFERINFOFUNCTION, &isSet)
        .set(CURLOPT_XFERINFODATA, static_cast<void const*>(m_cancelFlag.get()))
        .set(CURLOPT_USERAGENT, m_userAgent.empty() ? nullptr : m_userAgent.str())
        .set(CURLOPT_SSL_VERIFYHOST, m_verifySsl ? 2L : 0L)
        .set(CURLOPT_SSL_VERIFYPEER, m_verifySsl ? 1L : 0L)
        .set(CURLOPT_CERTINFO, 1L)
        .set(CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_NO_REVOKE))
        .set(CURLOPT_CONNECTTIMEOUT, static_cast<long>(m_timeLimits.connecting.count()))
        .set(CURLOPT_LOW_SPEED_LIMIT, 1L)
        .set(CURLOPT_LOW_SPEED_TIME, static_cast<long>(m_timeLimits.standstill.count()));
    if (postData.empty()) {
        // Takes back the body of an earlier request on this handle.
        options.set(CURLOPT_POSTFIELDS, static_cast<char const*>(nullptr)).set(CURLOPT_HTTPGET, 1L);
    } else {
        // The size goes first: without it libcurl would measure the body up to its first NUL.
        options.set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(postData.length()))
            .set(CURLOPT_POSTFIELDS, postData.array());
    }
    return options.result();
}

/// A TLS library without such contexts refuses the option, and nothing is noted.
void CurlEasyWrapper::observeTls() {
    if (!m_tlsObserver || !m_verifySsl)
        return;
    curl_ssl_ctx_callback const passOn = [](CURL*, void* context, void* self) {
        auto* const wrapper = static_cast<CurlEasyWrapper*>(self);
        wrapper->m_tlsObserver(context, wrapper->m_lastFacts.certificate);
        return CURLE_OK;
    };
    curl_easy_setopt(m_handle.get(), CURLOPT_SSL_CTX_FUNCTION, passOn);
    curl_easy_setopt(m_handle.get(), CURLOPT_SSL_CTX_DATA, this);
}

int CurlEasyWrapper::perform(unsigned urlLength, std::chrono::seconds whole) {
    using namespace std::chrono;
    auto const begin = steady_clock::now();
    int const code = performOnce(urlLength, whole);
    if (code == CURLE_OK || !answerProxy())
        return code;
    seconds const used = duration_cast<seconds>(steady_clock::now() - begin);
    return performOnce(urlLength, whole > seconds(0) ? std::max(whole - used, seconds(1)) : whole);
}

/// Whether the proxy has refused the tunnel for want of credentials, and gets them with the next transfer. It
/// is the proxy's own answer that counts: one that comes through the tunnel is a stranger's.
bool CurlEasyWrapper::answerProxy() {
    constexpr long authenticationRequired = 407;
    long answer = 0;
    curl_easy_getinfo(m_handle.get(), CURLINFO_HTTP_CONNECTCODE, &answer);
    Credentials const credentials = std::exchange(m_tunnelCredentials, Credentials());
    String const login = credentials.getDomainLogin(false), password = credentials.getPassword();
    if (answer != authenticationRequired || login.empty())
        return false;
    m_proxyLength = login.length() + password.length();
    // Not what the desktop's user is known by elsewhere (Negotiate): that was not entered for this proxy.
    constexpr unsigned long methods = CURLAUTH_BASIC | CURLAUTH_DIGEST | CURLAUTH_NTLM;
    return Options(m_handle.get())
               .set(CURLOPT_PROXYAUTH, static_cast<long>(methods))
               .set(CURLOPT_PROXYUSERNAME, login.str())
               .set(CURLOPT_PROXYPASSWORD, password.str())
               .result() == CURLE_OK;
}

int CurlEasyWrapper::performOnce(unsigned urlLength, std::chrono::seconds whole) {
    std::optional<LongHead> longHead;
    if (LongHead::isNeeded(urlLength, m_userAgent.length() + m_proxyLength, m_cookies))
        longHead.emplace(m_handle.get(), *m_url, m_cookies);
    HeaderTarget headers{m_lastRespHeader, longHead ? &*longHead : nullptr};
    CURLcode result = Options(m_handle.get())
                          .set(CURLOPT_HEADERDATA, &headers)
                          .set(CURLOPT_TIMEOUT, static_cast<long>(whole.count()))
                          .result();
    observeTls();
    if (result == CURLE_OK)
        result = curl_easy_perform(m_handle.get());
    curl_easy_getinfo(m_handle.get(), CURLINFO_SSL_VERIFYRESULT, &m_lastVerifyResult);
    return result;
}

/// Of a transfer that failed.
void CurlEasyWrapper::readFacts() {
    long systemError = 0, proxyStatus = 0, proxyVerdict = 0;
    curl_easy_getinfo(m_handle.get(), CURLINFO_OS_ERRNO, &systemError);
    curl_easy_getinfo(m_handle.get(), CURLINFO_HTTP_CONNECTCODE, &proxyStatus);
    curl_easy_getinfo(m_handle.get(), CURLINFO_PROXY_SSL_VERIFYRESULT, &proxyVerdict);
    m_lastFacts.systemError = static_cast<int>(systemError);
    m_lastFacts.proxyStatus = static_cast<unsigned>(proxyStatus);
    m_lastFacts.proxyRefused = proxyVerdict != 0;
    m_lastFacts.atProxy = isOfProxy(m_errorBuffer, *m_url);
}

void CurlEasyWrapper::setProxy(Proxy const& proxy) {
    switch (proxy.getType()) {
    case Proxy::SOCKS4:
        return useProxy(CURLPROXY_SOCKS4, proxy);
    case Proxy::SOCKS5:
        return useProxy(CURLPROXY_SOCKS5, proxy);
    case Proxy::HTTP_CONNECT:
        return useProxy(CURLPROXY_HTTP, proxy);
    case Proxy::NO_PROXY:
        m_proxyError = curl_easy_setopt(m_handle.get(), CURLOPT_PROXY, nullptr);
        return;
    }
    fail<Exception>("CurlEasyWrapper", "setProxy", "unknown proxy type", {"libs/curl/curlwrapper.cpp", 284});
}

void CurlEasyWrapper::setTunnel(String const& proxyUrl, Credentials const& credentials) {
    m_tunnelCredentials = credentials;
    m_proxyError =
        Options(m_handle.get()).set(CURLOPT_PROXY, proxyUrl.str()).set(CURLOPT_HTTPPROXYTUNNEL, 1L).result();
}

void CurlEasyWrapper::useProxy(long type, Proxy const& proxy) {
    String const host = proxy.getHost();
    String const login = proxy.getCredentials().getLogin();
    String const password = proxy.getCredentials().getPassword();
    m_proxyLength = login.length() + password.length();
    m_proxyError = Options(m_handle.get())
                       .set(CURLOPT_PROXYTYPE, type)
                       .set(CURLOPT_PROXY, host.str())
                       .set(CURLOPT_PROXYAUTH, static_cast<long>(CURLAUTH_ANY))
                       .set(CURLOPT_PROXYUSERNAME, login.str())
                       .set(CURLOPT_PROXYPASSWORD, password.str())
                       .result();
}

void CurlEasyWrapper::setShare(CURLSH* share) {
    curl_easy_setopt(m_handle.get(), CURLOPT_SHARE, share);
}

void CurlEasyWrapper::removeShare() {
    curl_easy_setopt(m_handle.get(), CURLOPT_SHARE, nullptr);
}

String CurlEasyWrapper::urlEncodeString(String const& text) const {
    // A length of 0 would make libcurl measure the bytes itself.
    if (text.empty())
        return String();
    if (text.length() <= static_cast<unsigned>(std::numeric_limits<int>::max()))
        if (std::unique_ptr<char, void (*)(void*)> const encoded(
                curl_easy_escape(m_handle.get(), text.array(), static_cast<int>(text.length())), &curl_free);
            encoded)
            return String::copyOf(encoded.get());
    // libcurl refuses texts of several megabytes.
    return http::Uri::encode(text);
}

String CurlEasyWrapper::tlsLibrary() {
    char const* const version = curl_version_info(CURLVERSION_NOW)->ssl_version;
    return version ? String::copyOf(version) : String();
}

String CurlEasyWrapper::lastErrorString() const {
    return String::copyOf(curl_easy_strerror(static_cast<CURLcode>(m_lastErrorCode)));
}

String CurlEasyWrapper::lastErrorBuf() const {
    return withoutProxySecrets(String::copyOf(m_errorBuffer));
}

} // namespace quillon
