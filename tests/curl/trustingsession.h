// A session for servers whose certificate nobody has signed.
#pragma once

#include "curl/curlwrapper.h"
#include "support/testserver.h"

namespace quillon::test {

class TrustingSession : public CurlSession {
public:
    bool verifySSL(String const&) override { return false; }
};

/// Sends all requests to a proxy.
class ProxySession : public TrustingSession {
public:
    explicit ProxySession(Proxy const& proxy) : m_proxy(proxy) {}
    Proxy getProxy(String const&) override { return m_proxy; }

private:
    Proxy m_proxy;
};

inline TestServer::Handler answering(Reply const& reply) {
    return [reply](Request const&) { return reply; };
}

inline http::SetCookie cookie(char const* name, char const* value, char const* domain = "127.0.0.1") {
    http::SetCookie cookie(name, value);
    cookie.setDomain(domain);
    cookie.setPath("/");
    return cookie;
}

inline String urlOf(TestServer const& server, std::string_view target = "/") {
    return String::copyOf(server.url(target));
}

/// Whether a GET was completed, whatever the status.
inline bool get(CurlSession& session, String const& url) {
    Memory body;
    return session.request(url, body);
}

} // namespace quillon::test
