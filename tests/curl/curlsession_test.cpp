#include "base/stringwriter.h"
#include "support/logcapture.h"
#include "trustingsession.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>

#include <new>

using namespace quillon;
using namespace quillon::test;

namespace {

// A port that nobody listens on.
std::string deadAuthority() {
    return TestServer(answering(ok()), Tls::off).authority();
}

class FailingWriter : public TextWriter<IWriter> {
protected:
    void put(char const*, unsigned) override { throw std::bad_alloc(); }
};

} // namespace

TEST(CurlSession, get_and_post_arrive_as_given) {
    TestServer server(answering(ok("reply")));
    TrustingSession session;
    session.setUserAgent("TarvikClient 1");
    Memory body;
    EXPECT_TRUE(session.request(urlOf(server, "/a%2Fb?c=d"), body));
    EXPECT_EQ(String(body), "reply");
    String text;
    StringWriter writer(text);
    EXPECT_TRUE(session.request(urlOf(server), writer, String("x\0y", 3)));
    EXPECT_EQ(text, "reply");

    std::vector<Request> const requests = server.requests();
    ASSERT_EQ(requests.size(), 2u);
    EXPECT_EQ(requests[0].method, "GET");
    EXPECT_EQ(requests[0].target, "/a%2Fb?c=d");
    EXPECT_EQ(requests[0].header("User-Agent"), "TarvikClient 1");
    EXPECT_EQ(requests[1].method, "POST");
    EXPECT_EQ(requests[1].body, std::string("x\0y", 3));
}

TEST(CurlSession, only_the_final_replys_header_remains) {
    TestServer server(answering(raw("HTTP/1.1 103 Early Hints\r\nX-Hint: 1\r\n\r\n"
                                    "HTTP/1.1 302 Found\r\nLocation: /other\r\nContent-Length: 0\r\n\r\n")));
    TrustingSession session;
    Memory body;
    RequestInfo info;
    EXPECT_TRUE(session.request(urlOf(server), body, info));
    EXPECT_EQ(info.getResponseHeader().getResponseCode(), 302u);
    EXPECT_EQ(info.getResponseHeader().getLines().size(), 2u);
    EXPECT_EQ(server.requests().size(), 1u) << "redirects are not followed";
}

TEST(CurlSession, failures_are_logged_with_their_number) {
    TestServer tls(answering(ok()));
    TestServer truncating(answering(raw("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhalf")), Tls::off);
    TestServer resetting(answering(silent(Reply::reset)), Tls::off);
    std::tuple<String, int, char const*> const cases[] = {
        {urlOf(tls), 60, "(#60) [SSL"},
        {urlOf(truncating), 18, "(#18) ["},
        {urlOf(resetting), 56, "(#56) ["},
        {String::copyOf("http://" + deadAuthority()), 7, "(#7) [Failed to connect to 127.0.0.1"},
        {"file:///etc/hostname", 1, "Unsupported protocol (#1) ["},
        {String("http://127.0.0.1\0.example/", 26), 3, "(#3) []"},
        {"", 3, "(#3) ["},
    };
    LogCapture log;
    CurlSession session;
    for (auto const& [url, code, logged] : cases) {
        SCOPED_TRACE(std::string(url.view()));
        Memory body;
        RequestInfo info;
        EXPECT_FALSE(session.request(url, body, info));
        EXPECT_EQ(info.getCode(), code);
        EXPECT_TRUE(log.contains(logged)) << log.text();
    }
    EXPECT_EQ(log.count("ERROR CurlEasyWrapper.request "), std::size(cases));
}

TEST(RequestInfo, format_shows_what_is_known) {
    EXPECT_EQ(RequestInfo().format(), "Code: 0");
    EXPECT_EQ(RequestInfo(7, "", "details").format(), "Code: 7\ndetails");
    EXPECT_EQ(RequestInfo(7, "why", "details").format(), "Code: 7(why)\ndetails");
}

TEST(CurlSession, throwing_writer_ends_the_transfer) {
    TestServer server(answering(ok("body")));
    LogCapture log;
    TrustingSession session;
    FailingWriter writer;
    RequestInfo info;
    EXPECT_FALSE(session.request(urlOf(server), writer, info));
    EXPECT_EQ(info.getCode(), 23);
    EXPECT_TRUE(log.contains("Failed writing received data to disk/application (#23) ["));
}

TEST(CurlSession, error_text_and_body_of_one_transfer_do_not_stay_for_the_next) {
    TestServer server(answering(ok()), Tls::off);
    CurlEasyWrapper handle;
    Memory body;
    EXPECT_FALSE(handle.request(String::copyOf("http://" + deadAuthority()), body, String("body").clone()));
    EXPECT_FALSE(handle.lastErrorBuf().empty());
    EXPECT_TRUE(handle.request(urlOf(server), body));
    EXPECT_EQ(handle.lastErrorBuf(), "");
    EXPECT_EQ(handle.lastErrorString(), "No error");
    EXPECT_EQ(server.requests().at(0).method, "GET");
    EXPECT_EQ(server.requests().at(0).body, "");
}

TEST(CurlSession, http_proxy_gets_the_request_and_the_credentials) {
    TestServer proxy(
        [](Request const& request) {
            return request.hasHeader("Proxy-Authorization")
                       ? ok("by proxy")
                       : status(407, "", {"Proxy-Authenticate: Basic realm=\"p\""});
        },
        Tls::off);
    Proxy settings(Proxy::HTTP_CONNECT, String::copyOf(proxy.authority()));
    settings.getCredentials() = Credentials("user", "secret", "domain");
    ProxySession session(settings);
    Memory body;
    EXPECT_TRUE(session.request("http://gate.example/x", body));
    EXPECT_EQ(String(body), "by proxy");
    Request const last = proxy.requests().back();
    EXPECT_EQ(last.target, "http://gate.example/x");
    EXPECT_EQ(last.header("Proxy-Authorization"), "Basic dXNlcjpzZWNyZXQ=");
}

TEST(CurlSession, proxy_type_none_leaves_the_environment_in_force) {
    TestServer proxy(answering(ok("by proxy")), Tls::off);
    setenv("http_proxy", proxy.authority().c_str(), 1);
    CurlSession session;
    Memory body;
    EXPECT_TRUE(session.request("http://gate.example/", body));
    unsetenv("http_proxy");
    EXPECT_EQ(String(body), "by proxy");
}

TEST(CurlSession, secrets_of_a_proxy_that_cannot_be_used_are_not_quoted) {
    for (std::string const& proxy : std::vector<std::string>{
             "http://name:secret@h:999999", "http://name:sec'ret@h h:80", "xyz://name:secret@h:1",
             "http://name:" + std::string(300, 's') + "@h:999999"}) {
        setenv("http_proxy", proxy.c_str(), 1);
        LogCapture log;
        CurlSession session;
        Memory body;
        RequestInfo info;
        EXPECT_FALSE(session.request("http://gate.example/", body, info)) << proxy;
        unsetenv("http_proxy");
        EXPECT_TRUE(log.contains("[Unsupported proxy ")) << log.text();
        for (std::string const& text : {log.text(), std::string(info.format().view())})
            for (char const* const secret : {"name:", "sec", "ret@", "sss"})
                EXPECT_EQ(text.find(secret), std::string::npos) << text;
    }
}

TEST(CurlSession, strings_are_encoded_whatever_their_length) {
    CurlSession const session;
    EXPECT_EQ(session.urlEncodeString(""), "");
    EXPECT_EQ(session.urlEncodeString(String("a b\0~", 5)), "a%20b%00~");
    String huge;
    huge.append(9u << 20, '&');
    EXPECT_EQ(session.urlEncodeString(huge).length(), 3 * huge.length());
}

TEST(CurlInitializer, broken_connections_do_not_end_the_process) {
    CurlSession session;
    struct sigaction current {};
    sigaction(SIGPIPE, nullptr, &current);
    EXPECT_EQ(current.sa_handler, SIG_IGN);
}
