// Ends of the headless client at random moments of a session.
#include "attacks/attackfixture.h"
#include "attacks/random.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

namespace quillon::test {

namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;

constexpr std::chrono::seconds bearable(SANITIZED ? 20 : 5);

/// How a session is ended.
struct End {
    char const* name;
    char const* redirection; // of the program's streams, as the shell writes it
    std::vector<int> signals;
    Codes codes;
    bool tells; // the last line is "onStatus 4"
};

End const ends[] = {
    {"SIGTERM", "", {SIGTERM}, {0}, true},
    {"SIGINT", "", {SIGINT}, {0}, true},
    {"SIGHUP, then SIGTERM", "", {SIGHUP, SIGTERM}, {0}, true},
    {"SIGKILL", "", {SIGKILL}, {-SIGKILL}, false},
    {"no standard input", "<&-", {SIGTERM}, {0}, true},
    {"no standard output", ">&-", {SIGTERM}, {0}, false},
    {"no reader of the output", "> >(:)", {SIGTERM}, {0, -SIGPIPE}, false},
};

class EndsAttack : public AttackTest {
protected:
    /// Whether the client had taken its signals over when it ended: it takes the data directory for its user
    /// alone a little later.
    bool hadBegun() const { return fs::status(dataDirectory()).permissions() == fs::perms::owner_all; }

    void prepare() {
        fs::permissions(dataDirectory(), fs::perms::owner_all | fs::perms::group_read);
        if (m_random.below(2)) // every other session installs
            fs::remove(installed(Kind::plugin));
    }

    void end(End const& end) {
        prepare();
        ChildProcess client({"/bin/bash", "-c", std::string("exec \"$0\" \"$1\" ") + end.redirection,
                             TEST_PROGRAMS "/tarvikclient-cli", std::string(m_gateway.launchUrl().view())},
                            environment());
        std::this_thread::sleep_for(milliseconds(m_random.below(SANITIZED ? 3000 : 500)));
        auto const begin = std::chrono::steady_clock::now();
        for (int const signal : end.signals) {
            client.signal(signal);
            std::this_thread::sleep_for(milliseconds(m_random.below(20)));
        }
        int const code = client.wait();
        EXPECT_LT(std::chrono::steady_clock::now() - begin, bearable) << end.name;
        std::string const output = client.output();
        if (!hadBegun() && code == -end.signals.front() && output.empty())
            return; // the signal came before the program was ready for it
        EXPECT_TRUE(end.codes.contains(code)) << end.name << ": " << code << "\n"
                                              << output << client.errors();
        EXPECT_TRUE(!end.tells || output.ends_with("onStatus 4\n")) << end.name << "\n" << output;
    }

    Random m_random;
};

TEST_F(EndsAttack, at_random_moments) {
    serve(Kind::plugin, honestArchive(Kind::plugin));
    fs::remove(directory(Kind::plugin) + "/script.txt"); // the tunnel stays up
    unsigned const count = countFromEnvironment("TARVIK_ENDS", SANITIZED ? 14 : 35);
    unsigned done = 0;
    while (done < count && !HasFailure())
        end(ends[done++ % std::size(ends)]);
    // Whatever was cut off in the middle: the next session is as it should be.
    writeFile(String::copyOf(directory(Kind::plugin) + "/script.txt"), R"([{"code":"8","reason":"1"}])");
    expectHonestSession(Kind::plugin);
    std::printf("ends: %u\n", done);
}

} // namespace

} // namespace quillon::test
