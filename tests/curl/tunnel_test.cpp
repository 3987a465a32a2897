// Proxies that a source of the desktop's names.
#include "trustingsession.h"

#include <gtest/gtest.h>
#include <stdlib.h>

using namespace quillon;
using namespace quillon::test;

namespace {

/// Names one proxy for every URL, and keeps the URLs.
class Source final : public IProxySource {
public:
    String proxyFor(String const& url, std::function<bool()> const&) override {
        urls.emplace_back(url.view());
        return proxy;
    }

    String proxy;
    std::vector<std::string> urls;
};

/// A session without a proxy of its own and with the user's credentials for one.
class CredentialsSession : public TrustingSession {
public:
    explicit CredentialsSession(Credentials const& credentials) { m_proxy.getCredentials() = credentials; }
    Proxy getProxy(String const&) override { return m_proxy; }

private:
    Proxy m_proxy;
};

/// A proxy, and the gateway behind its tunnel.
class TunnelTest : public ::testing::Test {
protected:
    Reply answer(Request const& request) const {
        if (request.method != "CONNECT")
            return gatewayAsks ? asking() : ok("by tunnel");
        return !proxyAsks || request.hasHeader("Proxy-Authorization")
                   ? raw("HTTP/1.1 200 Established\r\n\r\n", Reply::keepAlive)
                   : asking();
    }
    static Reply asking() { return status(407, "", {"Proxy-Authenticate: Basic realm=\"p\""}); }
    /// Each request's method, with a "+" where credentials were in it.
    std::string seen() const {
        std::string all;
        for (Request const& request : proxy.requests())
            all += request.method + (request.hasHeader("Proxy-Authorization") ? "+ " : " ");
        return all;
    }
    bool request(Credentials const& credentials, String const& url = "http://u:p@gate.example/secret?x=y") {
        source.proxy = "http://" + String::copyOf(proxy.authority());
        CredentialsSession session(credentials);
        session.setProxySource(&source);
        return get(session, url);
    }

    bool proxyAsks = false, gatewayAsks = false;
    Source source;
    TestServer proxy{[this](Request const& request) { return answer(request); }, Tls::off};
};

Credentials const user("user", "secret", "dom");

TEST_F(TunnelTest, credentials_are_the_proxys_that_asks_for_them_and_nobody_elses) {
    struct {
        bool proxyAsks, gatewayAsks;
        Credentials credentials;
        bool done;
        std::string begin, end;
    } const cases[] = {
        {false, false, user, true, "CONNECT GET ", "CONNECT GET "},
        {true, false, user, true, "CONNECT ", "CONNECT+ GET "},
        {false, true, user, true, "CONNECT GET ", "CONNECT GET "},
        {true, true, user, true, "CONNECT ", "CONNECT+ GET "},
        {true, false, Credentials(), false, "CONNECT ", "CONNECT "},
    };
    std::size_t before = 0;
    for (auto const& [fromProxy, fromGateway, credentials, done, begin, end] : cases) {
        proxyAsks = fromProxy;
        gatewayAsks = fromGateway;
        EXPECT_EQ(request(credentials), done);
        std::string const requests = seen().substr(before);
        before += requests.size();
        EXPECT_TRUE(requests.starts_with(begin) && requests.ends_with(end)) << requests;
        EXPECT_EQ(requests.find("GET+"), std::string::npos) << requests;
    }
    EXPECT_EQ(source.urls[0], "http://gate.example/") << "told a script from the network";
    for (Request const& seenRequest : proxy.requests())
        EXPECT_TRUE(!seenRequest.hasHeader("Proxy-Authorization") ||
                    seenRequest.header("Proxy-Authorization") == "Basic ZG9tXHVzZXI6c2VjcmV0");
}

TEST_F(TunnelTest, what_the_environment_or_the_session_names_comes_first) {
    TestServer other(answering(ok("by environment")), Tls::off);
    for (char const* const variable : {"http_proxy", "all_proxy", "ALL_PROXY"}) {
        setenv(variable, other.authority().c_str(), 1);
        EXPECT_TRUE(request(user));
        unsetenv(variable);
    }
    Proxy own(Proxy::HTTP_CONNECT, String::copyOf(other.authority()));
    ProxySession session(own);
    session.setProxySource(&source);
    EXPECT_TRUE(get(session, "http://gate.example/"));
    EXPECT_TRUE(source.urls.empty());
    EXPECT_EQ(seen(), "");

    setenv("https_proxy", other.authority().c_str(), 1); // of another scheme
    EXPECT_TRUE(request(user));
    unsetenv("https_proxy");
    EXPECT_EQ(seen(), "CONNECT GET ");
}

TEST_F(TunnelTest, a_source_that_names_none_or_nonsense) {
    TestServer gateway(answering(ok()), Tls::off);
    CredentialsSession session(user);
    session.setProxySource(&source);
    for (auto const& [named, done] : std::initializer_list<std::pair<char const*, bool>>{
             {"", true}, {"direct://", true}, {"ftp://127.0.0.1:1", false}, {"http://\n", false}}) {
        source.proxy = named;
        EXPECT_EQ(get(session, urlOf(gateway)), done) << named;
    }
}

} // namespace
