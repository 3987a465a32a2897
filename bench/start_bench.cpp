// How long the desktop program takes from its start to its first request, and its peak memory until then,
// beside a minimal wxWidgets program from its start to its end once its one frame has been drawn. Wants a
// display.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string>

extern char** environ;

namespace {

pid_t start(std::string program, std::string argument = {}) {
    program = BENCH_PROGRAMS "/" + program;
    char* arguments[] = {program.data(), argument.empty() ? nullptr : argument.data(), nullptr};
    pid_t pid = 0;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    if (posix_spawn(&pid, program.c_str(), &actions, nullptr, arguments, environ) != 0)
        throw std::runtime_error("cannot start " + program);
    posix_spawn_file_actions_destroy(&actions);
    return pid;
}

/// Peak resident memory of the process, in MiB, once it has ended.
double peakMemory(pid_t pid) {
    rusage usage{};
    wait4(pid, nullptr, 0, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

/// Listens on loopback, on a port that the system picks.
class Listener {
public:
    Listener() : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        if (bind(m_socket, reinterpret_cast<sockaddr*>(&address), length) != 0 || listen(m_socket, 8) != 0 ||
            getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &length) != 0)
            throw std::runtime_error("cannot listen");
        m_port = ntohs(address.sin_port);
    }
    ~Listener() { close(m_socket); }
    void awaitConnection() const { close(accept(m_socket, nullptr, nullptr)); }
    std::string url() const { return "tarvik://ticket@127.0.0.1:" + std::to_string(m_port) + "/?lang=en"; }

private:
    int m_socket;
    int m_port = 0;
};

void startToFirstRequest(benchmark::State& state) {
    Listener const listener;
    double peak = 0;
    for (auto _ : state) {
        pid_t const client = start("tarvikclient", listener.url());
        listener.awaitConnection();
        state.PauseTiming();
        kill(client, SIGKILL);
        peak = std::max(peak, peakMemory(client));
        state.ResumeTiming();
    }
    state.counters["peak_MiB"] = peak;
}
BENCHMARK(startToFirstRequest)->Name("tarvikclient")->Unit(benchmark::kMillisecond)->UseRealTime();

void minimalFrame(benchmark::State& state, char const* gl) {
    gl ? setenv("GDK_GL", gl, 1) : unsetenv("GDK_GL");
    double peak = 0;
    for (auto _ : state)
        peak = std::max(peak, peakMemory(start("minimalframe")));
    state.counters["peak_MiB"] = peak;
    unsetenv("GDK_GL");
}
BENCHMARK_CAPTURE(minimalFrame, as it comes, nullptr)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(minimalFrame, without GL, "disable")->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    unsetenv("GDK_GL"); // the program decides that itself
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
