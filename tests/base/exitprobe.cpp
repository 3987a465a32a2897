// A program that ends in the way its argument says, for the tests to look at.
#include "base/console.h"
#include "base/file.h"
#include "base/thread.h"
#include "base/threadmanager.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

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

/// Makes a pipe that is full, and whose reader never reads, the standard output.
void fillStandardOutput() {
    int ends[2];
    if (pipe(ends) != 0 || fcntl(ends[1], F_SETFL, O_NONBLOCK) != 0)
        std::abort();
    while (write(ends[1], "x", 1) == 1) {
    }
    fcntl(ends[1], F_SETFL, 0);
    dup2(ends[1], STDOUT_FILENO);
    for (int i = 0; i < 1000; ++i)
        log(TRACE, "tag", "main", "", "nobody reads this");
    std::this_thread::sleep_for(std::chrono::milliseconds(100)); // the console's task waits by now
    Console::instance()->setStream(ERROR, "null");
}

void writeBeyondTheLimit() {
    rlimit limit{4096, 4096};
    setrlimit(RLIMIT_FSIZE, &limit);
    char path[] = "/tmp/tarvik-test-XXXXXX";
    close(mkstemp(path));
    try {
        File::writeAllFile(path, String().append(1 << 20, 'x'));
    } catch (EFile const& e) {
        log(TRACE, "tag", "main", "", e.getName());
    }
    unlink(path);
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
    else if (mode == "pipe that nobody empties")
        fillStandardOutput();
    else if (mode == "file that may not grow")
        writeBeyondTheLimit();
    else if (mode == "all threads killed") {
        start("synchronised", true, 60000);
        start("other", false, 60000);
        threadManager().killAllThreads();
    }
    log(TRACE, "tag", "main", "", "ends");
}
