// The client under every call of its interface at once, from several threads: worth most under
// ThreadSanitizer.
#include "attacks/random.h"
#include "client/clientfixture.h"

#include <functional>
#include <thread>

namespace quillon::test {

namespace {

constexpr unsigned long bearableMs = 20000;

class RacesAttack : public ClientTest {
protected:
    RacesAttack() {
        serveModule("test_hostchecker");
        m_gateway.serve("/hostcheck", json(R"({"success":true,"result":{"continue":true}})"));
    }

    /// What the gateway does in a round: a session that goes on until it is stopped, one that ends at once,
    /// one whose answer never comes, one whose answer is none.
    void prepare() {
        Reply const none[] = {json(R"({"success":false})"), silent(Reply::hold), silent(Reply::reset)};
        if (unsigned const which = m_random.below(4))
            m_gateway.serve("/mediation", none[which - 1]);
        else
            m_gateway.serveResult(m_gateway.hostcheckerConfiguration());
    }

    void call(Random& random) {
        std::function<void()> const calls[] = {
            [&] { m_client->run(m_gateway.launchUrl()); },
            [&] { m_client->stop(); },
            [&] { m_client->cancel(); },
            [&] { m_client->restart(); },
            [&] { m_client->isRunning(); },
            [&] { m_client->getMediation(); },
            [&] { m_client->showLogs(); },
            [&] { m_client->join(random.below(3)); },
        };
        calls[random.below(std::size(calls))]();
    }

    void round() {
        prepare();
        std::vector<std::thread> callers;
        for (int i = 0; i < 3; ++i)
            callers.emplace_back([this, seed = m_random.below(1u << 31)] {
                Random random(seed);
                for (unsigned calls = 1 + random.below(4); calls > 0; --calls) {
                    for (unsigned spins = random.below(300); spins > 0; --spins)
                        std::this_thread::yield();
                    call(random);
                }
            });
        for (std::thread& caller : callers)
            caller.join();
        m_client->cancel();
        ASSERT_TRUE(m_client->join(bearableMs)) << "the session does not end";
        ASSERT_FALSE(m_client->isRunning());
    }

    Random m_random;
};

TEST_F(RacesAttack, start_stop_cancel_restart_and_query) {
    makeClient();
    unsigned const rounds = countFromEnvironment("TARVIK_ROUNDS", 100);
    unsigned done = 0;
    for (; done < rounds && !HasFatalFailure(); ++done) {
        SCOPED_TRACE(done);
        if (m_random.below(8) == 0)
            makeClient(); // the one before goes, with what it still holds
        round();
    }
    std::printf("rounds: %u\n", done);
    // After all of it, a session is as it should be.
    m_gateway.serve("/hostcheck", json(R"({"success":true,"result":{}})"));
    m_gateway.serveResult(m_gateway.hostcheckerConfiguration());
    EXPECT_EQ(runSession().back(), "onStatus 4");
}

} // namespace

} // namespace quillon::test
