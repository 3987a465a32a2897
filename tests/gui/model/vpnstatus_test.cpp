#include "tarvikclient/gui/model/vpnstatus.h"

#include <gtest/gtest.h>

#include <utility>

namespace quillon {

// No catalogue is loaded: a text is its key.
TEST(VpnStatus, tells_the_state_by_the_beginning_of_the_line) {
    std::pair<char const*, char const*> const cases[] = {
        {"init", "VPN_INIT"},
        {"authenticating", "VPN_AUTHENTICATING"},
        {"reconnecting ip=10.1.2.3", "VPN_RECONNECTING"},
        {"getconfig", "VPN_GETCONFIG"},
        {"authErrorBadPassword", "VPN_AUTHERROR"},
        {"connected", "VPN_CONNECTED"},
        {"connected ip=10.1.2.3", "VPN_GIVENIP 10.1.2.3"},
        {"connectedip=::1 ip=2", "VPN_GIVENIP ::1 ip=2"},
        {"connected ip=", "VPN_GIVENIP "},
        {"connected ip=100%s%n", "VPN_GIVENIP 100%s%n"},
        {"", "VPN_STOPPED"},
        {"Init", "VPN_GIVENIP before"}, // no state: the last one stays
        {" init", "VPN_GIVENIP before"},
        {"auth", "VPN_GIVENIP before"},
    };
    for (auto const& [line, text] : cases) {
        VpnStatus status;
        status.accept("connected ip=before");
        status.accept(line);
        EXPECT_EQ(status.text(), text) << line;
    }
}

TEST(VpnStatus, counts_dots_while_a_state_is_in_progress) {
    VpnStatus status;
    status.accept("init");
    for (char const* const dots : {".", "..", "...", "", "."}) {
        EXPECT_TRUE(status.advance());
        EXPECT_EQ(status.text(), wxString("VPN_INIT") + dots);
    }
    for (char const* const line : {"connected", "authError", ""}) {
        status.accept("init");
        status.accept(line);
        EXPECT_FALSE(status.advance()) << line;
    }
}

} // namespace quillon
