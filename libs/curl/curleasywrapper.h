// One libcurl easy handle.
#pragma once

#include "base/proxy.h"
#include "base/strings.h"
#include "base/writer.h"
#include "curl/cookiejar.h"
#include "curl/curlinitializer.h"
#include "curl/ecurl.h"
#include "curl/requesturl.h"
#include "curl/transferfacts.h"
#include "http/responseheader.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>

using CURL = void;
using CURLSH = void;

namespace quillon {

/// How long a transfer may take.
struct TimeLimits {
    std::chrono::seconds connecting{30};
    std::chrono::seconds standstill{60}; // in which no byte moves
    std::chrono::seconds whole{90};      // of a transfer into memory, from its start to its end
};

/// Performs HTTP and HTTPS transfers, one at a time, and keeps the outcome of the last one. Other protocols
/// and URLs that RequestUrl finds unfit are refused, and redirects are not followed. A transfer fails beyond
/// its TimeLimits and when its replies have more than HeaderTarget::maxHeaderSize (256 KB) of header lines.
/// The handle keeps its cookies from one transfer to the next. One thread at a time.
class CurlEasyWrapper {
public:
    /// Gets `count` elements of `size` bytes of the body and the callback's data; returns how many bytes it
    /// took, fewer to end the transfer. Called on the thread that makes the request; must not throw.
    using WriteCallback = std::size_t (*)(char* bytes, std::size_t size, std::size_t count, void* data);
    /// Becomes true, on any thread, when transfers are to end.
    using CancelFlag = std::shared_ptr<std::atomic<bool> const>;
    /// Gets libcurl's TLS context before a connection is made and sees to it that the verification is noted;
    /// must not change its outcome. Called on the thread that makes the request.
    using TlsObserver = void (*)(void* context, std::optional<CertificateFacts>& note) noexcept;

    /// Throws ECurl when libcurl gives no handle.
    CurlEasyWrapper();
    ~CurlEasyWrapper();
    CurlEasyWrapper(CurlEasyWrapper const&) = delete;
    CurlEasyWrapper& operator=(CurlEasyWrapper const&) = delete;

    /// Transfers `url` and blocks until that is done: a POST of `postData`, or a GET when it is empty. True
    /// when the transfer was completed, whatever the HTTP status; a failure is logged. It may last as long as
    /// bytes move.
    bool request(String const& url, WriteCallback callback, void* callbackData, String const& postData);
    /// The body goes to a writer piece by piece, for as long as bytes move. When the writer throws, whatever
    /// it is, the transfer ends at once with code 23, and the writer gets nothing more.
    bool request(String const& url, IWriter& out, String const& postData = String());
    /// The body is appended to `out`; the transfer fails when that exceeds MemoryTarget::maxBodySize (4 MB)
    /// or the whole takes too long.
    bool request(String const& url, Memory& out, String const& postData = String());

    /// Empty, which it is at first: none is sent.
    void setUserAgent(String const& userAgent) { m_userAgent = userAgent.owned(); }
    String const& getUserAgent() const noexcept { return m_userAgent; }
    /// Whether the peer's certificate and its name are checked; they are at first.
    void setVerifySsl(bool verify) noexcept { m_verifySsl = verify; }
    /// Puts a cookie into the handle's store; a cookie with an empty value is sent too. Throws ECurl when
    /// libcurl does not keep it as it is.
    void setCookie(http::SetCookie const& cookie) { m_cookies.set(cookie); }
    /// Puts in a copy of another handle's cookies.
    void copyCookies(CurlEasyWrapper const& other) { m_cookies.copyFrom(other.m_cookies); }
    /// Carries over what happened to the cookies of a copy between two calls of its listCookies().
    void mergeCookies(Strings const& before, Strings const& after) { m_cookies.merge(before, after); }
    /// The cookies that have a domain, as lines of the Netscape cookie file.
    Strings listCookies() const { return m_cookies.lines(); }
    /// "none" leaves the proxy to libcurl, which looks at the environment. Throws Exception for an unknown
    /// type.
    void setProxy(Proxy const& proxy);
    /// Goes through the proxy at this URL, to which a tunnel is asked of by CONNECT for every request. The
    /// login and the password are the proxy's alone, and only when it is one of HTTP that has refused the
    /// tunnel without them (407): the transfer is then made once more. What setProxy() has set is void.
    void setTunnel(String const& proxyUrl, Credentials const& credentials);
    /// `share` must live until removeShare() or the handle's end.
    void setShare(CURLSH* share);
    void removeShare();
    void setTimeLimits(TimeLimits const& limits) { m_timeLimits = limits; }
    /// Once the flag is true a transfer under way ends within about a second, whatever it is waiting for, and
    /// later ones fail at once, both with code 42. Null, as at first: nothing ends them.
    void setCancelFlag(CancelFlag const& flag) { m_cancelFlag = flag; }
    /// Null, as at first: verifications are not noted.
    void setTlsObserver(TlsObserver observer) noexcept { m_tlsObserver = observer; }
    /// The TLS library that contexts come from, "OpenSSL/3.0.19" for instance. Any thread.
    static String tlsLibrary();

    /// Percent-encodes every byte but letters, digits, "-", ".", "_" and "~".
    String urlEncodeString(String const& text) const;

    /// libcurl's result code of the last transfer; 0 is success.
    int lastErrorCode() const noexcept { return m_lastErrorCode; }
    /// libcurl's text for that code.
    String lastErrorString() const;
    /// libcurl's details of the last transfer's failure, without a proxy's user name and password; may be
    /// empty.
    String lastErrorBuf() const;
    /// The header of the last reply of the last transfer.
    http::ResponseHeader const& lastRespHeader() const noexcept { return m_lastRespHeader; }
    /// The verification's verdict on the peer's certificate in the last transfer (X509_V_...); 0 is success.
    long lastVerifyResult() const noexcept { return m_lastVerifyResult; }
    TransferFacts const& lastFacts() const noexcept { return m_lastFacts; }

private:
    struct Cleanup {
        void operator()(CURL* handle) const;
    };

    bool transfer(String const& url, WriteCallback callback, void* callbackData, String const& postData,
                  std::chrono::seconds whole);
    int checkTransfer() const;
    int setUpTransfer(WriteCallback callback, void* callbackData, String const& postData);
    bool isCancelled() const { return m_cancelFlag && *m_cancelFlag; }
    int perform(unsigned urlLength, std::chrono::seconds whole);
    int performOnce(unsigned urlLength, std::chrono::seconds whole);
    bool answerProxy();
    void observeTls();
    void readFacts();
    void useProxy(long type, Proxy const& proxy);

    std::shared_ptr<CurlInitializer> const m_initializer = CurlInitializer::instance();
    std::unique_ptr<CURL, Cleanup> const m_handle;
    bool m_verifySsl = true;
    char m_errorBuffer[256] = {};
    int m_lastErrorCode = 0;
    String m_userAgent;
    TimeLimits m_timeLimits;
    std::optional<RequestUrl> m_url; // of the last transfer
    http::ResponseHeader m_lastRespHeader;
    long m_lastVerifyResult = 0;
    TransferFacts m_lastFacts;
    TlsObserver m_tlsObserver = nullptr;
    int m_proxyError = 0;            // a request must not go without the proxy that it was given
    Credentials m_tunnelCredentials; // until a transfer has needed them
    unsigned m_proxyLength = 0;      // bytes that the proxy's credentials may add to a head
    CookieJar m_cookies;
    CancelFlag m_cancelFlag;
};

} // namespace quillon
