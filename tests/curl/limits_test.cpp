#include "trustingsession.h"

#include "base/stringwriter.h"

#include <gtest/gtest.h>

#include <thread>

using namespace quillon;
using namespace quillon::test;

namespace {

TestServer::Handler answering(Reply const& reply) {
    return [reply](Request const&) { return reply; };
}

} // namespace

TEST(TransferLimits, standstillEndsTheTransfer) {
    TestServer server(answering(silent(Reply::hold)));
    TrustingSession session;
    auto const handle = session.newHandle();
    handle->setVerifySsl(false);
    handle->setTimeLimits({std::chrono::seconds(5), std::chrono::seconds(1)});
    Memory body;
    EXPECT_FALSE(handle->request(urlOf(server), body));
    EXPECT_EQ(handle->lastErrorCode(), 28);
}

TEST(TransferLimits, aBodyThatNeverEndsIsGivenUpInMemoryAndWaitedForByAWriter) {
    TestServer server(answering(raw("HTTP/1.1 200 OK\r\n\r\n", Reply::trickle)));
    TrustingSession session;
    auto const handle = session.newHandle();
    handle->setVerifySsl(false);
    handle->setTimeLimits({std::chrono::seconds(5), std::chrono::seconds(5), std::chrono::seconds(1)});
    Memory body;
    EXPECT_FALSE(handle->request(urlOf(server), body));
    EXPECT_EQ(handle->lastErrorCode(), 28);
    EXPECT_GT(body.size(), 0u);
    std::thread end([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(1500));
        server.release();
    });
    String text;
    StringWriter writer(text);
    EXPECT_TRUE(handle->request(urlOf(server), writer));
    end.join();
}

TEST(TransferLimits, repliesAreBounded) {
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
    struct {
        char const* what;
        std::string reply;
        bool fitsMemory, fitsWriter;
    } const cases[] = {
        {"body", ok(std::string((4 << 20) + 1, 'b')).bytes, false, true},
        {"header", head + lines(255 << 10) + "Content-Length: 0\r\n\r\n", true, true},
        {"long header", head + lines(256 << 10) + "Content-Length: 0\r\n\r\n", false, false},
        {"interim replies", interim + ok().bytes, false, false},
        {"trailers", chunked + "\r\n0\r\n" + lines(256 << 10) + "\r\n", false, false},
        {"coded", head + "transfer-encoding : gzip, chunked\r\n\r\n0\r\n\r\n", false, false},
        {"compressed", ok("zipped", {"Content-Encoding: gzip"}).bytes, true, true},
    };
    for (auto const& c : cases) {
        TestServer server(answering(raw(c.reply)), Tls::off);
        CurlSession session;
        Memory body;
        EXPECT_EQ(session.request(urlOf(server), body), c.fitsMemory) << c.what;
        String text;
        StringWriter writer(text);
        RequestInfo info;
        EXPECT_EQ(session.request(urlOf(server), writer, info), c.fitsWriter) << c.what;
        EXPECT_EQ(info.getCode(), c.fitsWriter ? 0 : 23) << c.what;
    }
}
