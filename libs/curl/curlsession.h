// One logical HTTP(S) session.
#pragma once

#include "base/mutex.h"
#include "base/strings.h"
#include "curl/curleasywrapper.h"
#include "curl/proxysource.h"
#include "curl/requestinfo.h"

#include <memory>

namespace quillon {

/// Makes any number of requests, each on a fresh handle, with one cookie store, one DNS cache and one cache
/// of TLS sessions among them. An application overrides verifySSL() and getProxy() to decide on each URL.
///
/// Several threads may make requests at once. libcurl's share carries the DNS and TLS caches only, because it
/// does not support sharing cookies between handles that transfer concurrently. The session keeps the cookies
/// itself: the base wrapper's handle, which makes no transfers, is the jar. Under the session's lock each new
/// handle gets a copy of the jar's cookies, and after its transfer what the reply added, replaced or removed
/// is carried over to the jar.
///
/// Bodies are appended to a Memory or go to a writer piece by piece, on the calling thread; the limits are
/// those of CurlEasyWrapper.
class CurlSession {
public:
    /// Throws ECurl when libcurl gives no share or no handle.
    CurlSession();
    CurlSession(CurlSession const&) = delete;
    CurlSession& operator=(CurlSession const&) = delete;

    /// Whether the certificate of this URL's server is checked; yes for every one. Called once for each
    /// request, on its thread.
    virtual bool verifySSL(String const& url);
    /// The proxy for this URL; none. Called as verifySSL().
    virtual Proxy getProxy(String const& url);
    /// No request may be under way, and the handles made by newHandle() must be gone.
    virtual ~CurlSession();

    /// Where getProxy() names none, and neither does the environment, `source` is asked, which outlives the
    /// session; null, as at first, is nobody. The credentials that getProxy() gives are then for that proxy,
    /// as CurlEasyWrapper::setTunnel() says. Before requests are made.
    void setProxySource(IProxySource* source) { m_proxySource = source; }

    /// Each form blocks until the transfer is done; a GET, or a POST when there is a body that is not empty.
    /// True when the transfer was completed, whatever the HTTP status; a failure is logged. `info` is filled
    /// in either case. Throws what verifySSL() and getProxy() throw, ECurl when libcurl gives no handle, and
    /// Exception for a proxy of an unknown type.
    bool request(String const& url, IWriter& out);
    bool request(String const& url, Memory& out);
    bool request(String const& url, IWriter& out, String const& postData);
    bool request(String const& url, Memory& out, String const& postData);
    bool request(String const& url, IWriter& out, IRequestInfo& info);
    bool request(String const& url, Memory& out, IRequestInfo& info);

    /// For the handles that are made from now on; called before requests start.
    void setTlsObserver(CurlEasyWrapper::TlsObserver observer) noexcept { m_tlsObserver = observer; }

    /// Cuts off the transfers under way, which end within about a second, and makes those that follow fail at
    /// once, all with libcurl's code 42; on every handle of the session. Any thread; does not wait.
    void cancel();
    /// Lets handles that are made from now on transfer again. Those that were cut off stay cut off.
    void resume();
    /// Whether transfers fail since cancel(). Any thread.
    bool isCancelled() const;

    /// Puts a cookie into the session's store. Throws ECurl, after a log line without the value, when libcurl
    /// does not keep it as it is: name and value longer than 4096 bytes, or with bytes that no cookie may
    /// hold. Any thread.
    void setCookie(http::SetCookie const& cookie);
    /// Sets the user agent of later requests. Any thread.
    void setUserAgent(String const& userAgent);
    /// Percent-encodes every byte but letters, digits, "-", ".", "_" and "~". Any thread.
    String urlEncodeString(String const& text) const;
    /// A handle with the session's caches and user agent and a copy of its cookies. It belongs to the caller,
    /// who destroys it before the session; what its transfers do to its cookies stays with it. Any thread.
    std::unique_ptr<CurlEasyWrapper> newHandle();
    /// The session's cookies that have a domain, as lines of the Netscape cookie file. Any thread.
    Strings listCookies();

private:
    template <class Output>
    bool perform(String const& url, Output& out, String const& postData, IRequestInfo* info);

    void chooseProxy(CurlEasyWrapper& handle, String const& url);

    struct Cleanup {
        void operator()(CURLSH* share) const;
    };

    IProxySource* m_proxySource = nullptr;

    mutable Mutex m_lock; // of the share's data, the base wrapper's cookies and the flag
    CurlEasyWrapper m_base;
    // One for the handles between two calls of resume(), shared with them.
    std::shared_ptr<std::atomic<bool>> m_cancelFlag = std::make_shared<std::atomic<bool>>(false);
    CurlEasyWrapper::TlsObserver m_tlsObserver = nullptr;
    std::unique_ptr<CURLSH, Cleanup> const m_share; // last: cleaned up before its lock goes
};

} // namespace quillon
