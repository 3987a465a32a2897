// How long the desktop program takes from its start to its first request, and its peak memory until then, and
// to the first thing that a person sees while the gateway does not answer, beside a minimal wxWidgets
// program. Wants a display of its own, without a window manager.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

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

/// Sees what is drawn in one row of the screen, which both programs' windows cross.
class Screen {
public:
    Screen() : m_display(XOpenDisplay(nullptr)) {
        if (!m_display)
            throw std::runtime_error("no display");
    }
    ~Screen() { XCloseDisplay(m_display); }

    void awaitDrawn() const { await(true); }
    void awaitEmpty() const { await(false); }

private:
    void await(bool drawn) const {
        while (isDrawn() != drawn)
            usleep(500);
    }
    bool isDrawn() const {
        unsigned const width = static_cast<unsigned>(DisplayWidth(m_display, 0));
        XImage* const row =
            XGetImage(m_display, DefaultRootWindow(m_display), 0, y, width, 1, AllPlanes, ZPixmap);
        bool drawn = false;
        for (int x = 1; x < row->width; ++x)
            drawn = drawn || XGetPixel(row, x, 0) != XGetPixel(row, 0, 0);
        XDestroyImage(row);
        return drawn;
    }

    static constexpr int y = 20;
    Display* m_display;
};

/// The left-most pixel is the root's for our panel and the frame's for the minimal program: any change
/// counts.
void startToFirstSight(benchmark::State& state, char const* program) {
    Listener const silent;
    static Screen const screen; // for all runs: the server begins anew when its last client goes
    for (auto _ : state) {
        pid_t const shown = start(program, silent.url());
        screen.awaitDrawn();
        state.PauseTiming();
        kill(shown, SIGKILL);
        peakMemory(shown);
        screen.awaitEmpty();
        state.ResumeTiming();
    }
}
BENCHMARK_CAPTURE(startToFirstSight, tarvikclient, "tarvikclient")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(startToFirstSight, minimal, "minimalframe")->Unit(benchmark::kMillisecond)->UseRealTime();

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
