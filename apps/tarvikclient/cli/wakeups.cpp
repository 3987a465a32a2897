#include "tarvikclient/cli/wakeups.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>

namespace quillon::cli {

namespace {

std::atomic<Wakeups*> g_wakeups{nullptr};
std::atomic<bool> g_stopping{false};

extern "C" void onHangUp(int) {
    int const savedErrno = errno;
    g_wakeups.load()->post(Wakeup::hangUp);
    errno = savedErrno;
}

extern "C" void onStop(int signal) {
    int const savedErrno = errno;
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
    if (pipe(m_ends) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    for (int const end : m_ends)
        fcntl(end, F_SETFD, FD_CLOEXEC);
    // A handler must not block; a full pipe means that the main thread will wake anyway.
    fcntl(m_ends[1], F_SETFL, O_NONBLOCK);
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
    [[maybe_unused]] ssize_t const written = write(m_ends[1], "", 1);
}

Wakeup Wakeups::wait() {
    // A signal always ends poll(), where read() would be taken up again: ThreadSanitizer runs handlers
    // between two calls only.
    pollfd readable{m_ends[0], POLLIN, 0};
    char byte = 0;
    while (poll(&readable, 1, -1) != 1 || read(m_ends[0], &byte, 1) != 1)
        if (errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "read");
    if (m_stop.exchange(false))
        return Wakeup::stop;
    return m_hangUp.exchange(false) ? Wakeup::hangUp : Wakeup::news;
}

} // namespace quillon::cli
