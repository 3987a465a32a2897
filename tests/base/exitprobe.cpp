// A program that ends in the way its argument says, for the tests to look at.
#include "base/console.h"
#include "base/thread.h"

#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

using namespace quillon;

namespace {

struct Static {
    Static() { log(TRACE, "tag", "Static", "constructor", "before main"); }
    ~Static() { log(TRACE, "tag", "Static", "destructor", "after main"); }
} g_static;

struct Sleeper : Thread {
    Sleeper(char const* name, bool synchronised) : Thread(name, PRIORITY_NORMAL, synchronised) {}
    void main() override {
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
        log(TRACE, "Sleeper", "main", "woke up");
    }
    int ms = 60000;
};

/// Starts a thread that outlives main().
void start(char const* name, bool synchronised, int ms) {
    auto& sleeper = *new Sleeper(name, synchronised);
    sleeper.ms = ms;
    sleeper.run();
}

[[noreturn]] void failToStart() {
    rlimit limit{1 << 30, 1 << 30};
    setrlimit(RLIMIT_AS, &limit);
    Sleeper thread("too large", false);
    thread.setStackSize(2u << 30);
    thread.run();
    std::abort();
}

} // namespace

int main(int, char** arguments) {
    String const mode(arguments[1]);
    if (mode == "linger")
        start("lingering", true, 60000);
    else if (mode == "ending")
        start("ending", true, 300);
    else if (mode == "unsynchronised")
        start("unsynchronised", false, 60000);
    else if (mode == "quit")
        Console::instance()->quit_and_join();
    else if (mode == "no thread")
        failToStart();
    log(TRACE, "tag", "main", "", "ends");
}
