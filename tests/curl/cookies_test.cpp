#include "curl/cookieline.h"
#include "trustingsession.h"

#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <thread>

using namespace quillon;
using namespace quillon::test;

namespace {

http::SetCookie cookie(char const* name, char const* value, char const* domain = "127.0.0.1") {
    http::SetCookie cookie(name, value);
    cookie.setDomain(domain);
    cookie.setPath("/");
    return cookie;
}

// Answers /set?TEXT with "Set-Cookie: TEXT" and anything else with nothing.
Reply setCookies(Request const& request) {
    std::size_t const query = request.target.find('?');
    return query == std::string::npos ? ok() : ok("", {"Set-Cookie: " + request.target.substr(query + 1)});
}

std::string cookiesSentTo(TestServer const& server, CurlSession& session) {
    EXPECT_TRUE(get(session, urlOf(server)));
    return server.requests().back().header("Cookie");
}

// Lets callers go on when so many have come.
class Barrier {
public:
    explicit Barrier(int count) : m_missing(count) {}
    void arrive() {
        std::unique_lock lock(m_mutex);
        --m_missing;
        m_changed.notify_all();
        m_changed.wait_for(lock, std::chrono::seconds(10), [this] { return m_missing <= 0; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_missing;
};

} // namespace

TEST(Cookies, emptyValueIsSent) {
    TestServer server(setCookies);
    TrustingSession session;
    session.setCookie(cookie("Tarvik-Id", ""));
    EXPECT_EQ(cookiesSentTo(server, session), "Tarvik-Id=");
    session.setCookie(cookie("Tarvik-Id", "user"));
    EXPECT_EQ(cookiesSentTo(server, session), "Tarvik-Id=user");
}

TEST(Cookies, goOnlyToTheirDomainUnlessTheyHaveNone) {
    TestServer server(setCookies, Tls::off);
    CurlSession session;
    session.setCookie(cookie("other", "1", "gate.example"));
    EXPECT_EQ(cookiesSentTo(server, session), "");
    session.setCookie(cookie("all", "2", ""));
    EXPECT_EQ(cookiesSentTo(server, session), "all=2");
    EXPECT_EQ(session.listCookies().size(), 1u);
}

TEST(Cookies, whatAReplySetsReplacesAndRemovesIsKept) {
    static constexpr struct {
        char const *target, *sentAfterwards;
    } steps[] = {
        {"/set?a=1", "a=1"},
        {"/set?a=2", "a=2"},
        {"/set?a=;Max-Age=100", "a="},
        {"/set?a=3;HttpOnly", "a=3"},
        {"/set?a=3;domain=gate.example", "a=3"},
        {"/set?a=x;Max-Age=0", ""},
    };
    TestServer server(setCookies);
    TrustingSession session;
    for (auto const& step : steps) {
        EXPECT_TRUE(get(session, urlOf(server, step.target)));
        EXPECT_EQ(cookiesSentTo(server, session), step.sentAfterwards) << step.target;
    }
    EXPECT_TRUE(session.listCookies().empty());
}

TEST(Cookies, requestsAtOnceLoseNone) {
    constexpr int count = 8;
    Barrier barrier(2 * count);
    TestServer server([&](Request const& request) {
        if (request.path() == "/set")
            barrier.arrive();
        return setCookies(request);
    });
    TrustingSession session;
    session.setCookie(cookie("old", "1"));
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i)
        for (std::string const& padding : {std::string(), ";" + std::string(4000, 'x')})
            threads.emplace_back([&, i, padding] {
                std::string const name = (padding.empty() ? "c" : "long") + std::to_string(i);
                EXPECT_TRUE(get(session, urlOf(server, "/set?" + name + "=" + std::to_string(i) + padding)));
            });
    for (std::thread& thread : threads)
        thread.join();
    std::string const sent = cookiesSentTo(server, session);
    for (int i = 0; i < count; ++i)
        for (char const* const name : {"c", "long"})
            EXPECT_NE(sent.find(name + std::to_string(i) + "=" + std::to_string(i)), std::string::npos)
                << sent;
    EXPECT_NE(sent.find("old=1"), std::string::npos) << sent;
}

TEST(Cookies, aRequestThatSawAnOldCookieDoesNotUndoANewOne) {
    Barrier bothIn(2), replaced(2);
    TestServer server([&](Request const& request) {
        if (request.path() == "/slow") {
            bothIn.arrive();
            replaced.arrive();
            return ok();
        }
        return setCookies(request);
    });
    TrustingSession session;
    session.setCookie(cookie("id", "old"));
    std::thread slow([&] { EXPECT_TRUE(get(session, urlOf(server, "/slow"))); });
    bothIn.arrive();
    session.setCookie(cookie("id", "new"));
    replaced.arrive();
    slow.join();
    EXPECT_EQ(cookiesSentTo(server, session), "id=new");
}

// What the comparison with libcurl alone, which is made without TLS, does not come to.
TEST(CookieLine, secureOnesGoWithTlsAndToTheMachineItself) {
    static constexpr struct {
        char const *host, *url;
        bool isSent;
    } cases[] = {
        {"h", "https://h/", true},  {"h", "HTTPS://u:p@H:443/x?y#", true},        {"h", "http://h/", false},
        {"h", "https://i/", false}, {"localhost", "http://u@LocalHost:80", true},
    };
    for (auto const& c : cases) {
        String const line = String::copyOf(c.host) + "\tFALSE\t/\tTRUE\t0\tn\tv";
        EXPECT_EQ(CookieLine(line).matches(CookieTarget(RequestUrl(c.url))), c.isSent) << c.url;
    }
}

TEST(Cookies, thoseThatLibcurlWouldLeaveOutAreRefused) {
    std::string const longest(4094, 'v');
    LogCapture log;
    CurlSession session;
    for (std::string const& value :
         {longest + "v", std::string("v\tv"), std::string("v;v"), std::string(" v"), std::string("v\x7f")})
        EXPECT_THROW(session.setCookie(cookie("n", value.c_str())), ECurl) << value;
    EXPECT_EQ(log.count("ERROR CookieJar.set cookie n of "), 5u) << log.text();
    EXPECT_NO_THROW(session.setCookie(cookie("n", longest.c_str())));
    EXPECT_NO_THROW(session.setCookie(cookie("n", "v", "::1")));
}
