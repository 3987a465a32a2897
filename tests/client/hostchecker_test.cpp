// Sessions with a host-checker module.
#include "client/clientfixture.h"

#include <chrono>
#include <filesystem>

namespace quillon::test {

namespace {

class HostCheckerTest : public ClientTest {
protected:
    HostCheckerTest() {
        serveModule("test_hostchecker");
        m_gateway.serveResult(m_gateway.hostcheckerConfiguration());
    }

    std::string directory() const { return dataDirectory() + "/hostchecker"; }
    void answer(std::string const& result) {
        m_gateway.serve("/hostcheck", json(R"({"success":true,"result":)" + result + "}"));
    }
};

Lines const session{"onDispatch 3", "onStatus 2", "onStatus 5", "onStatus 4"};

TEST_F(HostCheckerTest, posts_what_the_module_found_and_closes_it) {
    answer(R"({"info":"enough"})");
    EXPECT_EQ(runSession(), session);
    EXPECT_EQ(calls(directory()),
              (Lines{"InitHostCheckerDll [] [] desk-1 en", "GetValidRules a=b & c", "CloseHostCheckerDll"}));
    Request const post = m_gateway.server().requests().back();
    EXPECT_EQ(post.method, "POST");
    EXPECT_EQ(post.body, "rulesChecked=valid%3A%20a%3Db%20%26%20c");
    EXPECT_EQ(post.header("Cookie"), "Tarvik-Id=ticket-1");
    EXPECT_TRUE(m_log->contains("TRACE TarvikClientHostchecker.sendResponse enough"));
    EXPECT_TRUE(std::filesystem::exists(directory() + "/7.1/module.so"));
}

TEST_F(HostCheckerTest, a_timer_of_zero_is_one_second) {
    JsonObject configuration = m_gateway.hostcheckerConfiguration();
    configuration["hostcheckingtimer"] = "0";
    m_gateway.serveResult(configuration);
    answer(R"({"continue":true})");
    makeClient();
    m_client->run(m_gateway.launchUrl());
    ASSERT_TRUE(m_gateway.server().awaitRequests(3));
    auto const first = std::chrono::steady_clock::now();
    ASSERT_TRUE(m_gateway.server().awaitRequests(4));
    EXPECT_GT(std::chrono::steady_clock::now() - first, std::chrono::milliseconds(700));
}

TEST_F(HostCheckerTest, stop_ends_the_wait_between_two_rounds_and_is_not_lost_during_a_post) {
    Reply reply = json(R"({"success":true,"result":{"continue":true}})"); // the next round is an hour away
    for (auto const delay : {std::chrono::hours(0), std::chrono::hours(1)}) {
        reply.delay = delay;
        m_gateway.serve("/hostcheck", reply);
        m_client.reset();
        auto const before = m_gateway.server().requests().size();
        makeClient();
        m_client->run(m_gateway.launchUrl());
        ASSERT_TRUE(m_gateway.server().awaitRequests(before + 3));
        m_client->stop();
        m_gateway.server().release();
        m_client->join();
        EXPECT_EQ(m_notify.lines().back(), "onStatus 4");
        EXPECT_EQ(calls(directory()).back(), "CloseHostCheckerDll");
    }
}

TEST_F(HostCheckerTest, answers_that_are_none_end_the_checks_quietly) {
    std::pair<Reply, char const*> const cases[] = {
        {json("nonsense"), "ERROR TarvikClientHostchecker.run Bad response from mediation"},
        {json(""), "ERROR TarvikClientHostchecker.run Bad response from mediation"},
        {json(R"({"success":true,"result":[]})"), nullptr},
        {json(R"({"success":false,"exception":"go away"})"), "ERROR TarvikClientHostchecker.run go away"},
        {silent(Reply::reset), "ERROR TarvikClientHostchecker.run Error while sending response"},
    };
    for (auto const& [reply, logged] : cases) {
        m_gateway.serve("/hostcheck", reply);
        restartLog();
        EXPECT_EQ(runSession().back(), "onStatus 4") << reply.bytes;
        EXPECT_TRUE(!logged || m_log->contains(logged)) << reply.bytes;
        EXPECT_EQ(calls(directory()).back(), "CloseHostCheckerDll") << reply.bytes;
    }
}

} // namespace

} // namespace quillon::test
