#include "http/responseheader.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

using namespace quillon;
using http::ResponseHeader;

TEST(ResponseHeader, status_lines_of_every_version_are_read) {
    static constexpr std::tuple<char const*, char const*, unsigned> cases[] = {
        {"HTTP/1.1 200 OK\r\n", "1.1", 200}, {"HTTP/1.0 404 Not Found", "1.0", 404}, {"HTTP/2 200", "2", 200},
        {"HTTP/2 503 \r\n", "2", 503},       {"HTTP/3   301 Moved", "3", 301},
    };
    for (auto const& [line, version, code] : cases) {
        ResponseHeader const header(line);
        EXPECT_FALSE(header.isResponseCodeExtracted());
        EXPECT_EQ(header.getResponseCode(), code) << line;
        EXPECT_TRUE(header.isResponseCodeExtracted());
        EXPECT_EQ(header.getVersion(), version);
    }
}

TEST(ResponseHeader, bad_status_lines_throw) {
    for (char const* line : {"", "HTTP/1.1", "HTTP/1.1 ", "HTTP/1.1 20", "HTTP/1.1 2000", "HTTP/1.1 20x OK",
                             "HTTP/1.1 -20", "FTP/1.1 200", "200 HTTP/1.1 200"}) {
        test::LogCapture log;
        ResponseHeader const header(line);
        EXPECT_THROW(header.getResponseCode(), http::EBadHeader) << line;
        EXPECT_TRUE(log.contains(std::string("ERROR http.Response.extractResponseCode bad header: ") + line));
        EXPECT_FALSE(header.isResponseCodeExtracted());
    }
}

TEST(ResponseHeader, lines_are_looked_up_without_regard_to_case) {
    ResponseHeader header("HTTP/1.1 200 OK");
    for (char const* line :
         {"set-cookie: a=1\r\n", "X-Forwarded-Proto:https\r\n", "Set-Cookie:  b=2 \r\n", "etag: \"v1\"\r\n",
          "x-odd: one\r\n", "\ttwo\r\n", "  three\r\n", "no colon\r\n", "Empty:\r\n", "\r\n"})
        header.addLine(line);
    ASSERT_EQ(header.getSetCookies().size(), 2u);
    EXPECT_EQ(header.getSetCookies()[0], "a=1");
    EXPECT_EQ(header.getSetCookies()[1], "b=2");
    EXPECT_EQ(header.getETag(), "\"v1\"");
    EXPECT_EQ(header.getValue("x-forwarded-Proto"), "https");
    EXPECT_EQ(header.getValue("X-ODD"), "one two three");
    EXPECT_TRUE(header.has("empty"));
    EXPECT_FALSE(header.has("no colon"));
    EXPECT_FALSE(header.has(""));
    EXPECT_EQ(header.getValue("Location"), "");
    EXPECT_EQ(header.getLines().size(), 7u);
}

TEST(ResponseHeader, a_hundred_thousand_continuations_are_linear) {
    ResponseHeader header("HTTP/1.1 200 OK");
    header.addLine("X: y");
    for (int i = 0; i < 100000; ++i)
        header.addLine(" more");
    EXPECT_EQ(header.getValue("X").length(), 1u + 5 * 100000);
}
