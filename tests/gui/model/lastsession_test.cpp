#include "tarvikclient/gui/model/lastsession.h"

#include <gtest/gtest.h>

namespace quillon {

// No catalogue is loaded: a text is its key.
TEST(LastSession, says_what_is_known_of_an_end) {
    using End = LeftSession::End;
    DateTime const time(1000);
    struct {
        LeftSession session;
        char const* text;
    } const cases[] = {
        {{End::crashed, {}, time, "a.so", "DllStart2", ""},
         "LAST_SESSION_MODULE_FAILED LAST_SESSION_ENDED_AT"},
        {{End::exited, time, {}, "a.so", "", ""}, "LAST_SESSION_MODULE_FAILED LAST_SESSION_BEGUN_AT"},
        {{End::crashed, {}, {}, "", "", ""}, "LAST_SESSION_FAILED"},
        {{End::vanished, time, {}, "", "", "log"}, "LAST_SESSION_VANISHED LAST_SESSION_BEGUN_AT"},
    };
    for (auto const& [session, text] : cases)
        EXPECT_EQ(lastSessionText(session), text);
}

} // namespace quillon
