#include "tarvikclient/gui/model/sessionstate.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

namespace quillon {

namespace {

using Step = std::function<bool(SessionState&)>;

Step tunnel(TunnelEvent event) {
    return [event](SessionState& state) { return state.onTunnel(event); };
}
Step status(ClientStatus value) {
    return [value](SessionState& state) { return state.onStatus(value); };
}
Step dispatch(ClientType type) {
    return [type](SessionState& state) { return state.onDispatch(type); };
}
bool fail(SessionState& state) {
    return state.fail();
}
bool leave(SessionState& state) {
    return state.leave();
}
bool abandon(SessionState& state) {
    return state.abandon();
}

/// A session whose clock stands still.
struct Session : SessionState {
    Session() : SessionState([] { return wxDateTime(22, wxDateTime::Nov, 2026, 9, 5); }) {
        begin("gate.example:8443");
    }
};

Step const progress = tunnel(TunnelEvent::progress), up = tunnel(TunnelEvent::connected),
           down = tunnel(TunnelEvent::stopped), fetch = dispatch(CLIENT_TYPE_PLUGINDLL);

} // namespace

// No catalogue is loaded: a text is its key.
TEST(SessionState, says_what_is_true_at_each_step) {
    using Stage = SessionStage;
    struct {
        std::vector<Step> steps; // the last of them changes something
        Stage stage;
        SessionMood mood;
        bool news;
    } const cases[] = {
        {{fetch}, Stage::fetching, SessionMood::busy, false},
        {{dispatch(CLIENT_TYPE_PLUGINDLL_NOTUNNEL)}, Stage::opening, SessionMood::connected, false},
        {{dispatch(CLIENT_TYPE_HOSTCHECKER), status(STATUS_DOWNLOADING_COMPENENTS),
          status(STATUS_HOSTCHECKING)},
         Stage::checking,
         SessionMood::busy,
         false},
        {{status(STATUS_HOSTCHECKING), status(STATUS_FINISHED)}, Stage::ended, SessionMood::quiet, false},
        {{fetch, progress}, Stage::connecting, SessionMood::busy, false},
        {{fetch, tunnel(TunnelEvent::unknown)}, Stage::connecting, SessionMood::busy, false},
        {{fetch, progress, up}, Stage::connected, SessionMood::connected, true},
        {{up, progress}, Stage::interrupted, SessionMood::trouble, true},
        {{up, progress, up}, Stage::connected, SessionMood::connected, true},
        {{tunnel(TunnelEvent::refused)}, Stage::refused, SessionMood::trouble, true},
        {{up, down}, Stage::ended, SessionMood::quiet, true},
        {{up, status(STATUS_FINISHED)}, Stage::ended, SessionMood::quiet, true},
        {{fail}, Stage::failed, SessionMood::trouble, false},
        {{up, leave}, Stage::leaving, SessionMood::busy, false},
        {{up, leave, abandon}, Stage::abandoning, SessionMood::trouble, false},
    };
    for (auto const& expected : cases) {
        Session session;
        bool changed = false;
        for (Step const& step : expected.steps)
            changed = step(session);
        auto const row = static_cast<int>(&expected - cases);
        EXPECT_TRUE(changed) << row;
        EXPECT_EQ(session.stage(), expected.stage) << row;
        EXPECT_EQ(session.mood(), expected.mood) << row;
        EXPECT_EQ(session.isNews(), expected.news) << row;
    }
}

TEST(SessionState, nothing_is_told_twice_nor_after_the_user_has_left) {
    Session session;
    up(session);
    for (Step const& again : {up, tunnel(TunnelEvent::unknown), Step(abandon)})
        EXPECT_FALSE(again(session));
    session.leave();
    for (Step const& late : {up, down, progress, status(STATUS_FINISHED), Step(fail), Step(leave)})
        EXPECT_FALSE(late(session));
    EXPECT_EQ(session.text(), "STATE_LEAVING");
    Session first;
    down(first);
    EXPECT_FALSE(first.isNews()) << "there was no tunnel";
}

TEST(SessionState, shows_the_gateway_only_by_a_name_that_a_host_can_have) {
    std::pair<wxString, bool> const names[] = {
        {"gate.example", true},
        {"[2001:db8::1]:8443", true},
        {"", false},
        {"gate example", false},
        {wxString::FromUTF8("g\xc3\xa4te"), false},
        {"a\nb", false},
    };
    for (auto const& [name, shown] : names) {
        SessionState session;
        session.begin(name);
        EXPECT_EQ(session.text() == "STATE_ASKING", shown) << name;
    }
}

} // namespace quillon
