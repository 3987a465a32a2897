#include "curl/cookieline.h"
#include "support/logcapture.h"
#include "trustingsession.h"

#include <gtest/gtest.h>

#include <latch>
#include <thread>

using namespace quillon;
using namespace quillon::test;

namespace {

// Answers /set?TEXT with "Set-Cookie: TEXT" and anything else with nothing.
Reply setCookies(Request const& request) {
    std::size_t const query = request.target.find('?');
    return query == std::string::npos ? ok() : ok("", {"Set-Cookie: " + request.target.substr(query + 1)});
}

std::string cookiesSentTo(TestServer const& server, CurlSession& session) {
    EXPECT_TRUE(get(session, urlOf(server)));
    return server.requests().back().header("Cookie");
}

using Texts = std::vector<std::string>;

} // namespace

TEST(Cookies, go_only_to_their_domain_unless_they_have_none) {
    TestServer server(setCookies, Tls::off);
    CurlSession session;
    session.setCookie(cookie("other", "1", "gate.example"));
    EXPECT_EQ(cookiesSentTo(server, session), "");
    session.setCookie(cookie("all", "2", ""));
    EXPECT_EQ(cookiesSentTo(server, session), "all=2");
    EXPECT_EQ(session.listCookies().size(), 1u);
}

TEST(Cookies, requests_at_once_lose_none) {
    constexpr int count = 8;
    std::latch all(2 * count);
    TestServer server([&](Request const& request) {
        if (request.path() == "/set")
            all.arrive_and_wait();
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

TEST(Cookies, a_request_that_saw_an_old_cookie_does_not_undo_a_new_one) {
    std::latch bothIn(2), replaced(2);
    TestServer server([&](Request const& request) {
        if (request.path() == "/slow") {
            bothIn.arrive_and_wait();
            replaced.arrive_and_wait();
            return ok();
        }
        return setCookies(request);
    });
    TrustingSession session;
    session.setCookie(cookie("id", "old"));
    std::thread slow([&] { EXPECT_TRUE(get(session, urlOf(server, "/slow"))); });
    bothIn.arrive_and_wait();
    session.setCookie(cookie("id", "new"));
    replaced.arrive_and_wait();
    slow.join();
    EXPECT_EQ(cookiesSentTo(server, session), "id=new");
}

// What the comparison with libcurl alone, which is made without TLS, does not come to.
TEST(CookieLine, secure_ones_go_with_tls_and_to_the_machine_itself) {
    static constexpr std::tuple<char const*, char const*, bool> cases[] = {
        {"h", "https://h/", true},  {"h", "HTTPS://u:p@H:443/x?y#", true},        {"h", "http://h/", false},
        {"h", "https://i/", false}, {"localhost", "http://u@LocalHost:80", true},
    };
    for (auto const& [host, url, isSent] : cases) {
        String const line = String::copyOf(host) + "\tFALSE\t/\tTRUE\t0\tn\tv";
        EXPECT_EQ(CookieLine(line).matches(CookieTarget(RequestUrl(url))), isSent) << url;
    }
}

TEST(Cookies, those_that_libcurl_would_leave_out_are_refused) {
    std::string const longest(4094, 'v');
    LogCapture log;
    CurlSession session;
    for (std::string const& value : Texts{longest + "v", "v\tv", "v;v", " v", "v\x7f"})
        EXPECT_THROW(session.setCookie(cookie("n", value.c_str())), ECurl) << value;
    EXPECT_EQ(log.count("ERROR CookieJar.set cookie n of "), 5u) << log.text();
    EXPECT_NO_THROW(session.setCookie(cookie("n", longest.c_str())));
    EXPECT_NO_THROW(session.setCookie(cookie("n", "v", "::1")));
}
