#include "tarvikclient/cli/wakeups.h"

#include "tarvikclient/sessionmark.h"

#include <cerrno>
#include <csignal>

namespace quillon::cli {

namespace {

std::atomic<Wakeups*> g_wakeups{nullptr};
std::atomic<bool> g_stopping{false};

extern "C" void onHangUp(int) {
    g_wakeups.load()->post(Wakeup::hangUp);
}

extern "C" void onStop(int signal) {
    int const savedErrno = errno;
    SessionMark::expectEnd();
    // The first stop is an order to end the session; a second one, of either kind, ends a program whose
    // session does not end.
    if (g_stopping.exchange(true)) {
        std::signal(signal, SIG_DFL);
        std::raise(signal);
    } else {
        g_wakeups.load()->post(Wakeup::stop);
    }
    errno = savedErrno;
}

void handle(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART; // it may come to any thread, a module's too
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

} // namespace

Wakeups::Wakeups() {
    g_wakeups = this;
    handle(SIGHUP, &onHangUp);
    handle(SIGINT, &onStop);
    handle(SIGTERM, &onStop);
}

void Wakeups::post(Wakeup reason) noexcept {
    if (reason == Wakeup::stop)
        m_stop = true;
    else if (reason == Wakeup::hangUp)
        m_hangUp = true;
    m_pipe.wake();
}

Wakeup Wakeups::wait() {
    m_pipe.await();
    if (m_stop.exchange(false))
        return Wakeup::stop;
    return m_hangUp.exchange(false) ? Wakeup::hangUp : Wakeup::news;
}

} // namespace quillon::cli
