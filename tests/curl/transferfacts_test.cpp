// What is noted of transfers that fail.
#include "openssl/verificationnote.h"
#include "support/testcertificate.h"
#include "trustingsession.h"

#include <gtest/gtest.h>
#include <openssl/ssl.h>

#include <cerrno>

using namespace quillon;
using namespace quillon::test;

namespace {

X509* g_trusted = nullptr; // by the sessions of these tests

void observe(void* context, std::optional<CertificateFacts>& note) noexcept {
    if (g_trusted)
        X509_STORE_add_cert(SSL_CTX_get_cert_store(static_cast<SSL_CTX*>(context)), g_trusted);
    tls::noteVerification(context, note);
}

class NotingSession : public CurlSession {
public:
    explicit NotingSession(Proxy const& proxy = Proxy()) : m_proxy(proxy) { setTlsObserver(&observe); }
    Proxy getProxy(String const&) override { return m_proxy; }

private:
    Proxy const m_proxy;
};

RequestInfo failed(String const& url, Proxy const& proxy = Proxy()) {
    NotingSession session(proxy);
    Memory body;
    RequestInfo info;
    EXPECT_FALSE(session.request(url, body, info));
    return info;
}

Proxy proxyAt(std::string const& authority) {
    return Proxy(Proxy::HTTP_CONNECT, String::copyOf("http://" + authority));
}

} // namespace

TEST(TransferFacts, the_certificate_that_does_not_verify_is_noted_and_still_refused) {
    ASSERT_TRUE(tls::isThisLibrary(CurlEasyWrapper::tlsLibrary())) << CurlEasyWrapper::tlsLibrary().view();
    struct {
        CertificateLooks looks;
        bool trusted;
        int verdict;
        std::string subject;
    } const cases[] = {
        {{}, false, X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT, "localhost"},
        {{.fromDays = -9, .toDays = -2}, true, X509_V_ERR_CERT_HAS_EXPIRED, "localhost"},
        {{.fromDays = 2}, true, X509_V_ERR_CERT_NOT_YET_VALID, "localhost"},
        {{.name = "other", .hosts = "DNS:other.example"}, true, X509_V_OK, "other"},
        {{.name = "", .hosts = "DNS:other.example"}, true, X509_V_OK, "other.example"},
        {{.name = "a\n%s&\xE2\x80\xAE<b>"},
         false,
         X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT,
         "a\n%s&\xE2\x80\xAE<b>"},
        {{.name = std::string(30000, 'x')},
         false,
         X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT,
         std::string(200, 'x') + " [...]"},
    };
    for (auto const& row : cases) {
        SCOPED_TRACE(row.looks.name.substr(0, 20));
        TestServer const server(answering(ok("x")), row.looks);
        g_trusted = row.trusted ? server.certificate()->certificate() : nullptr;
        RequestInfo const info = failed(urlOf(server));
        g_trusted = nullptr;
        EXPECT_EQ(info.getCode(), 60);
        EXPECT_EQ(server.requestCount(), 0u);
        auto const& facts = info.getFacts().certificate;
        ASSERT_TRUE(facts);
        EXPECT_EQ(facts->verdict, row.verdict);
        EXPECT_EQ(facts->subject.view(), row.subject);
        EXPECT_EQ(facts->notAfter - facts->notBefore, (row.looks.toDays - row.looks.fromDays) * 86400);
    }
}

TEST(TransferFacts, nothing_is_noted_of_what_is_not_verified_or_did_not_fail) {
    TestServer const server(answering(ok("x")));
    TrustingSession session;
    session.setTlsObserver(&observe);
    Memory body;
    RequestInfo info;
    EXPECT_TRUE(session.request(urlOf(server), body, info));
    EXPECT_FALSE(info.getFacts().certificate);
    EXPECT_EQ(info.getFacts().systemError, 0);
}

TEST(TransferFacts, a_connection_that_fails_says_why_and_where_to) {
    std::string const dead = TestServer(answering(ok()), Tls::off).authority();
    TestServer const proxy(answering(status(407)), Tls::off);
    String const url("https://gate.example:8443/"), deadUrl = String::copyOf("https://" + dead + "/");
    TransferFacts facts = failed(deadUrl).getFacts();
    EXPECT_EQ(facts.systemError, ECONNREFUSED);
    EXPECT_FALSE(facts.atProxy);
    facts = failed(url, proxyAt(dead)).getFacts();
    EXPECT_EQ(facts.systemError, ECONNREFUSED);
    EXPECT_TRUE(facts.atProxy);
    facts = failed(url, proxyAt(proxy.authority())).getFacts();
    EXPECT_EQ(facts.proxyStatus, 407u);
    EXPECT_FALSE(facts.atProxy);
}
