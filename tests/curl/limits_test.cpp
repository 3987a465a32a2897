#include "base/stringwriter.h"
#include "trustingsession.h"

#include <gtest/gtest.h>

#include <thread>

using namespace quillon;
using namespace quillon::test;

namespace {

std::string longTarget(std::size_t length) {
    return "/" + std::string(length, 'a') + "?q";
}

} // namespace

TEST(TransferLimits, standstill_ends_the_transfer) {
    TestServer server(answering(silent(Reply::hold)));
    CurlEasyWrapper handle;
    handle.setVerifySsl(false);
    handle.setTimeLimits({std::chrono::seconds(5), std::chrono::seconds(1)});
    Memory body;
    EXPECT_FALSE(handle.request(urlOf(server), body));
    EXPECT_EQ(handle.lastErrorCode(), 28);
}

TEST(TransferLimits, a_body_that_never_ends_is_given_up_in_memory_and_waited_for_by_a_writer) {
    TestServer server(answering(raw("HTTP/1.1 200 OK\r\n\r\n", Reply::trickle)));
    CurlEasyWrapper handle;
    handle.setVerifySsl(false);
    handle.setTimeLimits({std::chrono::seconds(5), std::chrono::seconds(5), std::chrono::seconds(1)});
    Memory body;
    EXPECT_FALSE(handle.request(urlOf(server), body));
    EXPECT_EQ(handle.lastErrorCode(), 28);
    EXPECT_GT(body.size(), 0u);
    std::thread end([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(1500));
        server.release();
    });
    String text;
    StringWriter writer(text);
    EXPECT_TRUE(handle.request(urlOf(server), writer));
    end.join();
}

TEST(TransferLimits, replies_are_bounded) {
    std::string const head = "HTTP/1.1 200 OK\r\n";
    std::string const chunked = head + "Transfer-Encoding: chunked\r\n";
    auto const lines = [](std::size_t size) {
        std::string text;
        while (text.size() < size)
            text += "X: 2345678901234567\r\n";
        return text;
    };
    std::string interim;
    while (interim.size() < 256 << 10)
        interim += "HTTP/1.1 103 Hint\r\n\r\n";
    std::tuple<char const*, std::string, bool, bool> const cases[] = {
        {"largest body", ok(std::string(4 << 20, 'b')).bytes, true, true},
        {"body", ok(std::string((4 << 20) + 1, 'b')).bytes, false, true},
        {"header", head + lines(255 << 10) + "Content-Length: 0\r\n\r\n", true, true},
        {"long header", head + lines(256 << 10) + "Content-Length: 0\r\n\r\n", false, false},
        {"interim replies", interim + ok().bytes, false, false},
        {"trailers", chunked + "\r\n0\r\n" + lines(256 << 10) + "\r\n", false, false},
        {"coded", head + "transfer-encoding : gzip, chunked\r\n\r\n0\r\n\r\n", false, false},
        {"compressed", ok("zipped", {"Content-Encoding: gzip"}).bytes, true, true},
    };
    for (auto const& [what, reply, fitsMemory, fitsWriter] : cases) {
        TestServer server(answering(raw(reply)), Tls::off);
        CurlSession session;
        Memory body;
        EXPECT_EQ(session.request(urlOf(server), body), fitsMemory) << what;
        String text;
        StringWriter writer(text);
        RequestInfo info;
        EXPECT_EQ(session.request(urlOf(server), writer, info), fitsWriter) << what;
        EXPECT_EQ(info.getCode(), fitsWriter ? 0 : 23) << what;
    }
}

// libcurl 7.88 by itself never ends such a request: from 8190 bytes on when there is a cookie, over TLS from
// 131072 bytes on in any case. Lengths around both limits, and some beyond.
TEST(LongHead, arrives_whole) {
    for (Tls const tls : {Tls::on, Tls::off}) {
        TestServer server(answering(ok()), tls);
        TrustingSession session;
        session.setCookie(cookie("Tarvik-Id", "user"));
        for (std::size_t const length : {2900, 3100, 8000, 8150, 9000, 65536, 128000, 131072, 1000000}) {
            std::string const target = longTarget(length);
            EXPECT_TRUE(get(session, urlOf(server, target))) << length;
            Request const request = server.requests().back();
            EXPECT_TRUE(request.target == target) << length;
            EXPECT_EQ(request.header("Cookie"), "Tarvik-Id=user") << length;
        }
    }
}

TEST(LongHead, body_follows) {
    TestServer server(answering(ok()));
    TrustingSession session;
    session.setCookie(cookie("Tarvik-Id", ""));
    String body;
    body.append(4u << 20, 'b');
    Memory reply;
    EXPECT_TRUE(session.request(urlOf(server, longTarget(200000)), reply, body));
    EXPECT_EQ(server.requests().back().body.size(), body.length());
    EXPECT_EQ(server.requests().back().header("Cookie"), "Tarvik-Id=");
}

TEST(LongHead, beyond_libcurls_limit_fails_at_once) {
    TestServer server(answering(ok()));
    TrustingSession session;
    for (std::size_t const length : {1100000, 9000000})
        EXPECT_FALSE(get(session, urlOf(server, longTarget(length))));
    EXPECT_TRUE(server.requests().empty());
}
