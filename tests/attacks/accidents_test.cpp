// Modules that take the client with them, and what the next one tells of it.
#include "attacks/attackfixture.h"

#include <sys/stat.h>

#include <csignal>
#include <filesystem>

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

char const savedLog[] = "/tarvikclient-last.log";

class LogAttackAccidents : public AttackTest {
protected:
    /// A session with the module that dies in this way. Its exit code.
    int die(std::string const& way) {
        serve(Kind::plugin, signedArchive("module.so", readFile(testModule("test_plugin_dying"))));
        ChildProcess::Environment all = environment();
        all["TEST_DEATH"] = way;
        return ChildProcess({TEST_PROGRAMS "/tarvikclient-cli", std::string(m_gateway.launchUrl().view())},
                            all)
            .wait();
    }
    /// What the next session, which is one in order, says on standard error.
    std::string told() {
        serve(Kind::plugin, honestArchive(Kind::plugin));
        ChildProcess next = start(m_gateway.launchUrl());
        EXPECT_EQ(next.wait(), 0) << next.output();
        return next.errors();
    }
    std::size_t marks() const {
        std::size_t count = 0;
        for (auto const& entry : fs::directory_iterator(dataDirectory()))
            count += entry.path().extension() == ".mark";
        return count;
    }
};

TEST_F(LogAttackAccidents, a_module_that_ends_the_process_is_named_in_the_log_and_at_the_next_start) {
    struct {
        char const* way;
        int code;
        char const *logged, *told; ///< nothing is where null
    } const cases[] = {
        {"segv", -SIGSEGV,
         "[tarvikclient] ERROR AccidentWatch.onCrash The client crashes with SIGSEGV in "
         "DllStart2 of the module plugindll.so\n",
         "crashed in DllStart2 of the module plugindll.so at "},
        {"fpe", -SIGFPE, "with SIGFPE in DllStart2", "crashed in DllStart2"},
        {"abort", -SIGABRT, "with SIGABRT in DllStart2", "crashed in DllStart2"},
        {"overflow", -SIGSEGV, "with SIGSEGV in DllStart2", "crashed in DllStart2"},
        {"thread", -SIGSEGV, "with SIGSEGV outside the client's calls of the module plugindll.so\n",
         "crashed with the module plugindll.so at "},
        {"exit", 3,
         "[tarvikclient] ERROR AccidentWatch.onExit The process is made to exit in the middle of a "
         "session in DllStart2 of the module plugindll.so\n",
         "was ended by exit() in DllStart2"},
        {"_exit", 3, nullptr, "was cut off; its log is "},
        {"kill", -SIGKILL, nullptr, "was cut off; its log is "},
        {"handles", 0, nullptr, nullptr},
        {"fork", 0, nullptr, nullptr},
    };
    for (auto const& [way, code, logged, expected] : cases) {
        restart();
        int const ended = die(way);
        EXPECT_TRUE(SANITIZED || ended == code) << way << " " << ended;
        EXPECT_EQ(marks(), expected ? 1u : 0u) << way;
        std::string const errors = told();
        std::string const log = readFile(String::copyOf(dataDirectory() + savedLog));
        EXPECT_EQ(errors.find(expected ? std::string("tarvikclient-cli: The last session ") + expected : ""),
                  0u)
            << way << ": " << errors;
        EXPECT_EQ(errors.empty(), !expected) << way << ": " << errors;
        EXPECT_NE(log.find(logged ? logged : ""), std::string::npos) << way << ": " << log;
        EXPECT_EQ(marks(), 0u) << way;
        EXPECT_EQ(told(), "") << way;
    }
}

TEST_F(LogAttackAccidents, marks_that_lie_are_taken_away_and_open_no_file) {
    std::string const secret = m_elsewhere.path() + "/secret", marked = dataDirectory() + "/session-a.mark";
    writeFile(String::copyOf(secret), "a secret\n");
    for (std::string const& text :
         {std::string(), std::string(1 << 20, 'x'), "running 1\nlog " + secret + "\n",
          std::string("running 99999999999999999999\nlog \ncrashed -1 \x1b[2J \x1b[2J\u202e\n"),
          std::string("ending  1\nlog /tmp/tarvikclient.log\n"), std::string("running\0\n\0", 11)}) {
        writeFile(String::copyOf(marked), text);
        std::string const errors = told();
        EXPECT_FALSE(hasControlCharacters(errors)) << errors;
        EXPECT_EQ(errors.empty(), !text.starts_with("running ")) << text.substr(0, 20);
        EXPECT_FALSE(fs::exists(dataDirectory() + savedLog));
        EXPECT_EQ(marks(), 0u);
    }
    fs::create_symlink(secret, marked);
    ASSERT_EQ(mkfifo((dataDirectory() + "/session-b.mark").c_str(), 0600), 0);
    EXPECT_EQ(told(), "");
}

/// Two clients of one user: the one's mark is not left while it runs.
TEST_F(LogAttackAccidents, a_running_session_is_no_left_one) {
    serve(Kind::plugin, honestArchive(Kind::plugin));
    fs::remove(directory(Kind::plugin) + "/script.txt"); // the tunnel stays up
    ChildProcess first = start(m_gateway.launchUrl());
    ASSERT_TRUE(first.awaitOutput("onStatus 2\n"));
    writeFile(String::copyOf(directory(Kind::plugin) + "/script.txt"), R"([{"code":"8","reason":"1"}])");
    EXPECT_EQ(told(), "");
    first.signal(SIGTERM);
    EXPECT_EQ(first.wait(), 0);
    EXPECT_EQ(told(), "");
}

} // namespace

} // namespace quillon::test
