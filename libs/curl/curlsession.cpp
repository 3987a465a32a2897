#include "curl/curlsession.h"

#include "base/failure.h"
#include "base/strings.h"
#include "curl/environmentproxy.h"
#include "http/uri.h"

#include <curl/curl.h>

namespace quillon {

namespace {

CURLSH* makeShare() {
    CURLSH* const share = curl_share_init();
    if (!share)
        fail<ECurl>("CurlSession", "CurlSession", "Cannot init CURL SHARE context",
                    {"libs/curl/curlwrapper.cpp", 40});
    return share;
}

// libcurl never asks for a second kind of data while it holds one, so that one lock does for all.
void lockShare(CURL*, curl_lock_data, curl_lock_access, void* lock) {
    static_cast<Mutex*>(lock)->lock();
}

void unlockShare(CURL*, curl_lock_data, void* lock) {
    static_cast<Mutex*>(lock)->unlock();
}

} // namespace

void CurlSession::Cleanup::operator()(CURLSH* share) const {
    curl_share_cleanup(share);
}

CurlSession::CurlSession() : m_share(makeShare()) {
    CURLSH* const share = m_share.get();
    curl_share_setopt(share, CURLSHOPT_USERDATA, &m_lock);
    curl_share_setopt(share, CURLSHOPT_LOCKFUNC, &lockShare);
    curl_share_setopt(share, CURLSHOPT_UNLOCKFUNC, &unlockShare);
    curl_share_setopt(share, CURLSHOPT_SHARE, CURL_LOCK_DATA_DNS);
    curl_share_setopt(share, CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
    m_base.setShare(share);
}

CurlSession::~CurlSession() {
    // libcurl does not clean up a share that a handle still uses.
    m_base.removeShare();
}

bool CurlSession::verifySSL(String const&) {
    return true;
}

Proxy CurlSession::getProxy(String const&) {
    return Proxy();
}

bool CurlSession::request(String const& url, IWriter& out) {
    return perform(url, out, String(), nullptr);
}

bool CurlSession::request(String const& url, Memory& out) {
    return perform(url, out, String(), nullptr);
}

bool CurlSession::request(String const& url, IWriter& out, String const& postData) {
    return perform(url, out, postData, nullptr);
}

bool CurlSession::request(String const& url, Memory& out, String const& postData) {
    return perform(url, out, postData, nullptr);
}

bool CurlSession::request(String const& url, IWriter& out, IRequestInfo& info) {
    return perform(url, out, String(), &info);
}

bool CurlSession::request(String const& url, Memory& out, IRequestInfo& info) {
    return perform(url, out, String(), &info);
}

template <class Output>
bool CurlSession::perform(String const& url, Output& out, String const& postData, IRequestInfo* info) {
    std::unique_ptr<CurlEasyWrapper> const handle = newHandle();
    handle->setVerifySsl(verifySSL(url));
    chooseProxy(*handle, url);
    Strings const before = handle->listCookies();
    bool const isDone = handle->request(url, out, postData);
    {
        TSynchronize<Mutex> lock(m_lock);
        m_base.mergeCookies(before, handle->listCookies());
    }
    if (info)
        info->readFromCurl(*handle);
    return isDone;
}

void CurlSession::chooseProxy(CurlEasyWrapper& handle, String const& url) {
    Proxy const proxy = getProxy(url);
    handle.setProxy(proxy);
    if (!m_proxySource || proxy.getType() != Proxy::NO_PROXY)
        return;
    http::Uri const uri = http::Uri::parse(url, true);
    if (environmentNamesProxy(uri.getScheme()))
        return;
    // Whoever is asked needs to know no more: the rest is secret, and may go to a script from the network.
    String const host = uri.getAuthority().rright('@');
    String const tunnel =
        m_proxySource->proxyFor(uri.getScheme() + "://" + host + "/", [this] { return isCancelled(); });
    if (!tunnel.empty() && !tunnel.starts("direct:"))
        handle.setTunnel(tunnel, proxy.getCredentials());
}

void CurlSession::setCookie(http::SetCookie const& cookie) {
    TSynchronize<Mutex> lock(m_lock);
    m_base.setCookie(cookie);
}

void CurlSession::setUserAgent(String const& userAgent) {
    TSynchronize<Mutex> lock(m_lock);
    m_base.setUserAgent(userAgent);
}

String CurlSession::urlEncodeString(String const& text) const {
    return CurlEasyWrapper().urlEncodeString(text);
}

std::unique_ptr<CurlEasyWrapper> CurlSession::newHandle() {
    auto handle = std::make_unique<CurlEasyWrapper>();
    handle->setShare(m_share.get()); // takes the lock by itself
    handle->setTlsObserver(m_tlsObserver);
    TSynchronize<Mutex> lock(m_lock);
    handle->setUserAgent(m_base.getUserAgent());
    handle->copyCookies(m_base);
    handle->setCancelFlag(m_cancelFlag);
    return handle;
}

void CurlSession::cancel() {
    TSynchronize<Mutex> lock(m_lock);
    *m_cancelFlag = true;
}

void CurlSession::resume() {
    TSynchronize<Mutex> lock(m_lock);
    if (*m_cancelFlag)
        m_cancelFlag = std::make_shared<std::atomic<bool>>(false);
}

bool CurlSession::isCancelled() const {
    TSynchronize<Mutex> lock(m_lock);
    return *m_cancelFlag;
}

Strings CurlSession::listCookies() {
    TSynchronize<Mutex> lock(m_lock);
    return m_base.listCookies();
}

} // namespace quillon
