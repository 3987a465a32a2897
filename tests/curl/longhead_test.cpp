#include "trustingsession.h"

#include <gtest/gtest.h>

using namespace quillon;
using namespace quillon::test;

namespace {

std::string longTarget(std::size_t length, char const* query) {
    return "/" + std::string(length, 'a') + "?" + query;
}

http::SetCookie cookie(char const* name, char const* value) {
    http::SetCookie cookie(name, value);
    cookie.setDomain("127.0.0.1");
    cookie.setPath("/");
    return cookie;
}

} // namespace

// libcurl 7.88 by itself never ends such a request: from 8190 bytes on when there is a cookie, over TLS from
// 131072 bytes on in any case. Lengths around both limits, and some beyond.
TEST(LongHead, arrivesWhole) {
    for (Tls const tls : {Tls::on, Tls::off}) {
        TestServer server([](Request const&) { return ok(); }, tls);
        TrustingSession session;
        session.setCookie(cookie("Tarvik-Id", "user"));
        for (std::size_t const length : {2900, 3100, 8000, 8150, 9000, 65536, 128000, 131072, 1000000}) {
            std::string const target = longTarget(length, "q");
            EXPECT_TRUE(get(session, urlOf(server, target))) << length;
            Request const request = server.requests().back();
            EXPECT_TRUE(request.target == target) << length;
            EXPECT_EQ(request.header("Cookie"), "Tarvik-Id=user") << length;
        }
    }
}

TEST(LongHead, bodyFollows) {
    TestServer server([](Request const&) { return ok(); });
    TrustingSession session;
    session.setCookie(cookie("Tarvik-Id", ""));
    String body;
    body.append(100000, 'b');
    Memory reply;
    EXPECT_TRUE(session.request(urlOf(server, longTarget(200000, "q")), reply, body));
    EXPECT_EQ(server.requests().back().body.size(), body.length());
    EXPECT_EQ(server.requests().back().header("Cookie"), "Tarvik-Id=");
}

TEST(LongHead, manyLongCookiesAllArrive) {
    TestServer server([](Request const&) { return ok(); });
    TrustingSession session;
    std::string const value(3000, 'v');
    for (char const* name : {"a", "b", "c", "d"})
        session.setCookie(cookie(name, value.c_str()));
    EXPECT_TRUE(get(session, urlOf(server)));
    EXPECT_EQ(server.requests().back().header("Cookie").size(), 4 * (2 + value.size()) + 3 * 2);
}

TEST(LongHead, beyondLibcurlsLimitFailsAtOnce) {
    TestServer server([](Request const&) { return ok(); });
    TrustingSession session;
    for (std::size_t const length : {1100000, 9000000})
        EXPECT_FALSE(get(session, urlOf(server, longTarget(length, "q"))));
    EXPECT_TRUE(server.requests().empty());
}
