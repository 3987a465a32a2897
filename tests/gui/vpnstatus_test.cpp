#include "tarvikclient/gui/vpnstatus.h"

#include <gtest/gtest.h>
#include <wx/init.h>

#include <initializer_list>

namespace quillon {

namespace {

/// No catalogue is loaded: a text is its key.
std::string textAfter(std::initializer_list<char const*> lines) {
    VpnStatus status;
    for (char const* const line : lines)
        status.accept(line);
    return status.text().utf8_string();
}

} // namespace

TEST(VpnStatus, tellsTheStateByTheBeginningOfTheLine) {
    struct Case {
        char const* line;
        char const* text;
    };
    for (auto const [line, text] : {
             Case{"init", "VPN_INIT"},
             Case{"authenticating", "VPN_AUTHENTICATING"},
             Case{"reconnecting ip=10.1.2.3", "VPN_RECONNECTING"},
             Case{"getconfig", "VPN_GETCONFIG"},
             Case{"authErrorBadPassword", "VPN_AUTHERROR"},
             Case{"connected", "VPN_CONNECTED"},
             Case{"connected ip=10.1.2.3", "VPN_GIVENIP 10.1.2.3"},
             Case{"connectedip=::1 ip=2", "VPN_GIVENIP ::1 ip=2"},
             Case{"connected ip=", "VPN_GIVENIP "},
             Case{"connected ip=100%s%n", "VPN_GIVENIP 100%s%n"},
             Case{"Init", "before"},
             Case{" init", "before"},
             Case{"auth", "before"},
         })
        EXPECT_EQ(textAfter({"connected ip=before", line}),
                  text == std::string("before") ? "VPN_GIVENIP before" : text)
            << line;
    EXPECT_EQ(textAfter({"Init"}), "");
    EXPECT_EQ(textAfter({"init", ""}), "VPN_STOPPED");
}

TEST(VpnStatus, ignoresARepeatedLineButNotOneThatComesBack) {
    VpnStatus status;
    EXPECT_FALSE(status.accept("")); // nothing has been said yet
    EXPECT_TRUE(status.accept("init"));
    status.advance();
    EXPECT_FALSE(status.accept("init"));
    EXPECT_EQ(status.text(), "VPN_INIT.");
    EXPECT_TRUE(status.accept("what is this"));
    EXPECT_TRUE(status.accept("init"));
    EXPECT_EQ(status.text(), "VPN_INIT");
}

TEST(VpnStatus, countsDotsWhileAStateIsInProgress) {
    VpnStatus status;
    status.accept("init");
    for (char const* const dots : {".", "..", "...", "", "."}) {
        EXPECT_TRUE(status.advance());
        EXPECT_EQ(status.text(), wxString("VPN_INIT") + dots);
    }
    status.accept("what is this"); // says nothing of the progress
    EXPECT_EQ(status.text(), "VPN_INIT");
    EXPECT_TRUE(status.advance());
    for (char const* const line : {"connected", "authError", ""}) {
        status.accept("init");
        status.advance();
        status.accept(line);
        wxString const text = status.text();
        EXPECT_FALSE(status.advance()) << line;
        EXPECT_EQ(status.text(), text);
    }
}

} // namespace quillon
