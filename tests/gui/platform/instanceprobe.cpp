// instanceprobe PATIENCE URL [COUNT [fork]]: a process that claims the place of the running client. The exit
// code is ten and its role. With a COUNT a first one says "first" and prints as many URLs as they come, for
// ten seconds at most; with "fork" it has a child that outlives it and starts no program.
#include "tarvikclient/gui/platform/singleinstance.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace quillon;

void leaveChild() {
    if (fork() == 0) {
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
        sleep(5);
        _exit(0);
    }
}

void receive(SingleInstance& instance, int count) {
    std::puts("first");
    std::fflush(stdout);
    auto const deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    auto const print = [&count](String const& url) {
        std::puts(url.str());
        --count;
    };
    while (count > 0 && std::chrono::steady_clock::now() < deadline)
        instance.receive(print, std::chrono::milliseconds(100));
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3)
        return 64;
    SingleInstance instance;
    auto const role = instance.claim(argv[2], std::chrono::milliseconds(std::atoi(argv[1])));
    if (argc == 5)
        leaveChild();
    if (argc > 3 && role == SingleInstance::Role::first)
        receive(instance, std::atoi(argv[3]));
    return 10 + static_cast<int>(role);
}
