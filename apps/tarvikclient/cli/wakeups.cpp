#include "tarvikclient/cli/wakeups.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace quillon::cli {

namespace {

std::atomic<Wakeups*> g_wakeups{nullptr};

extern "C" void onSignal(int signal) {
    int const savedErrno = errno;
    if (Wakeups* const wakeups = g_wakeups.load())
        wakeups->post(signal == SIGHUP ? Wakeup::restart : Wakeup::stop);
    errno = savedErrno;
}

void handle(int signal, int flags) {
    struct sigaction action {};
    action.sa_handler = &onSignal;
    action.sa_flags = flags;
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
    handle(SIGHUP, 0);
    // The first stop is an order to end the session; a second one ends a program whose session does not end.
    handle(SIGINT, SA_RESETHAND);
    handle(SIGTERM, SA_RESETHAND);
}

Wakeups::~Wakeups() {
    g_wakeups = nullptr;
    for (int const end : m_ends)
        close(end);
}

void Wakeups::post(Wakeup reason) noexcept {
    char const byte = static_cast<char>(reason);
    [[maybe_unused]] ssize_t const written = write(m_ends[1], &byte, 1);
}

Wakeup Wakeups::wait() {
    char byte = 0;
    while (read(m_ends[0], &byte, 1) != 1)
        if (errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "read");
    return static_cast<Wakeup>(byte);
}

} // namespace quillon::cli
