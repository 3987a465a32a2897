#include "http/knownheaders.h"
#include "http/responseheader.h"

#include "support/logcapture.h"

#include <gtest/gtest.h>

using namespace quillon;
using http::ResponseHeader;

TEST(KnownHeaders, areMatchedThroughTheirKeys) {
    EXPECT_EQ(http::knownHeaders().size(), 61u);
    EXPECT_EQ(http::knownHeaders().front().name, "Accept-Charset");
    EXPECT_EQ(http::knownHeaders().back().name, "Set-Cookie2");
    static constexpr char const* cases[][2] = {
        {"etag", "ETag"},
        {"SSL_client_s_dn_cn", "SSL_CLIENT_S_DN_CN"},
        {"X-TARVIK-TICKET64", "X-Tarvik-ticket64"},
        {"x-forwarded-Proto", "X-Forwarded-Proto"},
    };
    for (auto const& [asked, name] : cases) {
        http::KnownHeader const* const known = http::findKnownHeader(asked);
        ASSERT_TRUE(known) << asked;
        EXPECT_EQ(known->name, name);
    }
    EXPECT_FALSE(http::findKnownHeader("x-forwarded-proto"));
    EXPECT_FALSE(http::findKnownHeader("X-Unheard-Of"));
}

TEST(ResponseHeader, statusLinesOfEveryVersionAreRead) {
    static constexpr struct {
        char const *line, *version;
        unsigned code;
    } cases[] = {
        {"HTTP/1.1 200 OK\r\n", "1.1", 200}, {"HTTP/1.0 404 Not Found", "1.0", 404}, {"HTTP/2 200", "2", 200},
        {"HTTP/2 503 \r\n", "2", 503},       {"HTTP/3   301 Moved", "3", 301},
    };
    for (auto const& expected : cases) {
        ResponseHeader const header(expected.line);
        EXPECT_FALSE(header.isResponseCodeExtracted());
        EXPECT_EQ(header.getResponseCode(), expected.code) << expected.line;
        EXPECT_TRUE(header.isResponseCodeExtracted());
        EXPECT_EQ(header.getVersion(), expected.version);
    }
}

TEST(ResponseHeader, badStatusLinesThrow) {
    for (char const* line : {"", "HTTP/1.1", "HTTP/1.1 ", "HTTP/1.1 20", "HTTP/1.1 2000", "HTTP/1.1 20x OK",
                             "HTTP/1.1 -20", "FTP/1.1 200", "200 HTTP/1.1 200"}) {
        test::LogCapture log;
        ResponseHeader const header(line);
        try {
            header.getResponseCode();
            FAIL() << line;
        } catch (http::EBadHeader const& e) {
            EXPECT_EQ(e.toString(), "EBadHeader:response.cpp:29");
        }
        EXPECT_TRUE(log.contains(std::string("ERROR http.Response.extractResponseCode bad header: ") + line));
        EXPECT_FALSE(header.isResponseCodeExtracted());
    }
}

TEST(ResponseHeader, linesAreLookedUpWithoutRegardToCase) {
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

TEST(ResponseHeader, aHundredThousandContinuationsAreLinear) {
    ResponseHeader header("HTTP/1.1 200 OK");
    header.addLine("X: y");
    for (int i = 0; i < 100000; ++i)
        header.addLine(" more");
    EXPECT_EQ(header.getValue("X").length(), 1u + 5 * 100000);
}
