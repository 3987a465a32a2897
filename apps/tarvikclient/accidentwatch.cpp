#include "tarvikclient/accidentwatch.h"

#include "base/log.h"
#include "base/ownfile.h"
#include "tarvikclient/keptforsignals.h"
#include "tarvikclient/modulecall.h"
#include "tarvikclient/sessionmark.h"
#include "tarvikclient/signaltext.h"

#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <mutex>
#include <new>

namespace quillon {

namespace {

struct Crash {
    int signal;
    char const* name;
};

constexpr Crash crashes[] = {
    {SIGSEGV, "SIGSEGV"}, {SIGBUS, "SIGBUS"}, {SIGFPE, "SIGFPE"}, {SIGILL, "SIGILL"}, {SIGABRT, "SIGABRT"}};

struct sigaction g_before[std::size(crashes)];
constinit SignalDescriptor g_log;
constinit std::atomic<bool> g_reported{false};
constinit std::atomic<pid_t> g_process{0}; // a child that a module forks is not the client
constexpr std::size_t stackSize = 65536;   // bytes

std::size_t indexOf(int signal) noexcept {
    std::size_t index = 0;
    while (index + 1 < std::size(crashes) && crashes[index].signal != signal)
        ++index;
    return index;
}

void sleepMs(long ms) noexcept {
    timespec const time{ms / 1000, ms % 1000 * 1000000};
    nanosleep(&time, nullptr);
}

/// In the form of the log's lines.
void writeLine(char const* signalName) noexcept {
    ModuleCall::AtWork const work = ModuleCall::current();
    SignalText line;
    line.addLogTime().add(" [");
    if (work.here)
        line.add("tarvikclient");
    else
        line.addThread();
    line.add("] ERROR AccidentWatch.onCrash The client crashes with ").add(signalName);
    if (!work.module)
        line.add("; no module is loaded");
    else if (work.here)
        line.add(" in ").add(work.call).add(" of the module ").add(work.module);
    else
        line.add(" outside the client's calls of the module ").add(work.module);
    line.add("\n").writeTo(g_log.number() >= 0 ? g_log.number() : STDERR_FILENO);
}

void report(int signal) noexcept {
    constexpr long queuedLinesMs = 50, otherThreadMs = 1000;
    if (g_reported.exchange(true))
        return sleepMs(otherThreadMs); // which is at it, and ends the process
    SessionMark::add(SessionMark::Accident::crash);
    sleepMs(queuedLinesMs); // the console's thread writes what came before
    writeLine(crashes[indexOf(signal)].name);
}

extern "C" void onCrash(int signal, siginfo_t* info, void*) {
    int const savedErrno = errno;
    if (getpid() == g_process)
        report(signal);
    sigaction(signal, &g_before[indexOf(signal)], nullptr);
    // What the thread itself has done it does again as soon as this returns; what it was sent is sent again.
    if (info->si_code <= 0 || info->si_code == SI_USER || info->si_code == SI_QUEUE || signal == SIGABRT)
        raise(signal);
    errno = savedErrno;
}

void onExit() {
    ModuleCall::AtWork const work = ModuleCall::current();
    // A module that ends the process while it is stopped does harm, but nobody's session is cut off.
    if (SessionMark::isEndUnexpected())
        SessionMark::add(SessionMark::Accident::exit);
    else if (!work.here)
        return;
    String where = work.here ? String(" in ") + work.call : String(" outside the client's calls");
    log(ERROR, "AccidentWatch", "onExit",
        String("The process is made to exit in the middle of a session") +
            (work.module ? where + " of the module " + work.module : String("; no module is loaded")));
}

/// None for what is no path, "null" and "stdout" among them.
Descriptor openLog(String const& path) noexcept {
    return path.starts('/') ? openOwnFile(AT_FDCWD, path.str(), O_WRONLY | O_APPEND) : Descriptor();
}

void install() {
    struct sigaction action {};
    action.sa_sigaction = &onCrash;
    action.sa_flags = static_cast<int>(SA_SIGINFO | SA_ONSTACK);
    sigemptyset(&action.sa_mask);
    for (Crash const& crash : crashes)
        sigaddset(&action.sa_mask, crash.signal);
    g_process = getpid();
    for (std::size_t i = 0; i < std::size(crashes); ++i) {
        sigaction(crashes[i].signal, nullptr, &g_before[i]); // before the handler can need it
        sigaction(crashes[i].signal, &action, nullptr);
    }
    std::atexit(&onExit);
}

} // namespace

void watchForAccidents(String const& log) noexcept {
    static constinit std::once_flag installed;
    SignalText::rememberTimeZone();
    if (Descriptor file = openLog(log))
        g_log.set(std::move(file));
    std::call_once(installed, &install);
}

SignalStack::SignalStack() noexcept {
    stack_t current{};
    if (sigaltstack(nullptr, &current) != 0 || !(current.ss_flags & SS_DISABLE))
        return;
    std::size_t const size = std::max(stackSize, static_cast<std::size_t>(SIGSTKSZ));
    m_memory.reset(new (std::nothrow) char[size]);
    stack_t mine{};
    mine.ss_sp = m_memory.get();
    mine.ss_size = size;
    if (m_memory && sigaltstack(&mine, nullptr) != 0)
        m_memory.reset();
}

SignalStack::~SignalStack() {
    stack_t current{};
    if (!m_memory || sigaltstack(nullptr, &current) != 0)
        return;
    if (current.ss_sp == m_memory.get()) { // and not one that a module has put there
        stack_t none{};
        none.ss_flags = SS_DISABLE;
        sigaltstack(&none, nullptr);
    }
}

} // namespace quillon
