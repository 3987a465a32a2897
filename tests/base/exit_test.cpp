#include "support/temporarydirectory.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdlib>

namespace {

using namespace quillon;

struct Ending {
    int status;
    double seconds;
    std::string out, err;
};

Ending runProbe(std::string const& mode) {
    test::TemporaryDirectory directory;
    auto const start = std::chrono::steady_clock::now();
    // The probe leaves threads behind on purpose; that alone is nothing for a sanitizer to complain of.
    std::string const command =
        "timeout 60 env TSAN_OPTIONS=\"$TSAN_OPTIONS report_thread_leaks=0\" '" EXITPROBE "' '" + mode +
        "' >'" + directory.path() + "/out' 2>'" + directory.path() + "/err'";
    int const status = std::system(command.c_str());
    std::chrono::duration<double> const took = std::chrono::steady_clock::now() - start;
    return {status, took.count(), test::readFile(directory.file("out")),
            test::readFile(directory.file("err"))};
}

/// Whether the parts stand in `text` in this order.
bool inOrder(std::string const& text, std::initializer_list<char const*> parts) {
    std::size_t at = 0;
    for (char const* part : parts)
        if ((at = text.find(part, at)) == std::string::npos)
            return false;
    return true;
}

} // namespace

TEST(ProcessExit, gives_up_on_a_synchronised_thread_after_five_seconds) {
    Ending const ending = runProbe("linger");
    EXPECT_EQ(ending.status, 0);
    EXPECT_EQ(ending.err, "SynchroThread::~SynchroThread\tcannot wait for all threads termination for: 5s\n"
                          "got 1 remaining threads\nSurvivors:\n * lingering\n");
    EXPECT_GE(ending.seconds, 4.9);
    EXPECT_LT(ending.seconds, 15);
}

// The last three once hung for ever, or ended in a crash.
TEST(ProcessExit, is_prompt_whatever_happens_before) {
    static constexpr char const *before = "[tag] TRACE Static.constructor before main\n",
                                *ends = "[tag] TRACE main: ends\n",
                                *after = "[tag] TRACE Static.destructor after main\n";
    struct {
        char const* mode;
        int seconds;
        std::initializer_list<char const*> said;
    } const cases[] = {
        {"plain", 4, {before, ends, after}},
        {"unsynchronised", 4, {before, ends, after}},
        {"quit", 20, {ends, after}}, // what is logged from then on is printed at once
        {"ending", 20, {ends, "[ending] TRACE Sleeper.main woke up\n"}}, // a thread that is waited for
        {"pipe that nobody empties", 20, {}},
        {"all threads killed", 20, {ends}},
        {"file that may not grow", 20, {"[tag] TRACE main: EFile\n"}},
    };
    for (auto const& [mode, seconds, said] : cases) {
        // A sanitizer that a thread is cancelled in loses sight of the locks that the thread takes from then
        // on.
        if (SANITIZED && std::string_view(mode) == "all threads killed")
            continue;
        Ending const ending = runProbe(mode);
        EXPECT_EQ(ending.status, 0) << mode;
        EXPECT_EQ(ending.err, "") << mode;
        EXPECT_LT(ending.seconds, seconds) << mode;
        EXPECT_TRUE(inOrder(ending.out, said)) << ending.out;
    }
}

TEST(ProcessExit, a_thread_that_cannot_be_started_is_fatal) {
    if (SANITIZED)
        GTEST_SKIP() << "a sanitizer's own memory does not fit the limit";
    Ending const ending = runProbe("no thread");
    EXPECT_NE(ending.status, 0);
    EXPECT_TRUE(inOrder(ending.out, {"ERROR Thread.run Not enough system resources to create the thread\n",
                                     "ERROR Thread.run Resource temporarily unavailable\n"}))
        << ending.out;
    EXPECT_EQ(ending.out.find("main: ends"), std::string::npos);
}
