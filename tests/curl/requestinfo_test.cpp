#include "curl/curlwrapper.h"

#include "support/testserver.h"

#include <gtest/gtest.h>

using namespace quillon;

TEST(RequestInfo, formatShowsWhatIsKnown) {
    EXPECT_EQ(RequestInfo().format(), "Code: 0");
    EXPECT_EQ(RequestInfo(7, "Refused", "").format(), "Code: 7(Refused)");
    EXPECT_EQ(RequestInfo(7, "", "details").format(), "Code: 7\ndetails");
}

TEST(RequestInfo, refusedConnectionIsToldInFull) {
    String url;
    {
        test::TestServer const gone([](test::Request const&) { return test::ok(); }, test::Tls::off);
        url = String::copyOf(gone.url());
    }
    CurlSession session;
    Memory body;
    RequestInfo info;
    EXPECT_FALSE(session.request(url, body, info));
    String const text = info.format();
    EXPECT_TRUE(text.starts("Code: 7(Couldn't connect to server)\nFailed to connect to 127.0.0.1 port ") &&
                text.ends("Couldn't connect to server"))
        << text.str();
}
