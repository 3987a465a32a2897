// Transfers that are cut off from another thread.
#include "transfer.h"

namespace quillon::test {

namespace {

TEST(Cancel, ends_a_transfer_that_waits_for_a_reply_or_its_rest) {
    for (Reply const& reply : {silent(Reply::hold), raw("HTTP/1.1 200 OK\r\n\r\n", Reply::trickle)}) {
        TestServer server(answering(reply));
        TrustingSession session;
        Transfer transfer(session, urlOf(server));
        EXPECT_TRUE(server.awaitRequests(1));
        transfer.expectCutOff();
    }
}

TEST(Cancel, ends_a_handshake_that_the_peer_does_not_take_up) {
    // It takes what the client says for the beginning of a request and waits for more.
    TestServer mute(answering(ok()), Tls::off);
    TrustingSession session;
    Transfer transfer(session, String::copyOf("https://" + mute.authority() + "/"));
    transfer.expectCutOff();
}

TEST(Cancel, makes_later_requests_fail_at_once_until_the_session_is_resumed) {
    TestServer server(answering(ok()));
    TrustingSession session;
    auto const older = session.newHandle();
    session.cancel();
    EXPECT_TRUE(session.isCancelled());
    Memory body;
    EXPECT_FALSE(session.request(urlOf(server), body));
    session.resume();
    EXPECT_TRUE(get(session, urlOf(server)));
    EXPECT_FALSE(older->request(urlOf(server), body));
    EXPECT_EQ(older->lastErrorCode(), 42);
    EXPECT_EQ(server.requests().size(), 1u);
}

TEST(Cancel, is_not_taken_back_from_a_transfer_under_way_when_the_session_is_resumed) {
    TestServer server(answering(silent(Reply::hold)));
    TrustingSession session;
    Transfer transfer(session, urlOf(server));
    ASSERT_TRUE(server.awaitRequests(1));
    session.cancel();
    session.resume();
    EXPECT_EQ(transfer.getCode(), 42);
}

} // namespace

} // namespace quillon::test
