#include "tarvikclient/gui/platform/stopsignals.h"

#include "base/log.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace quillon {

namespace {

std::atomic<int> g_writeEnd{-1};

extern "C" void onStopSignal(int) {
    int const savedErrno = errno;
    [[maybe_unused]] ssize_t const written = write(g_writeEnd, "", 1);
    errno = savedErrno;
}

} // namespace

StopSignals::StopSignals(std::function<void()> onStop) : m_onStop(std::move(onStop)) {
    if (pipe(m_ends) != 0) {
        log(ERROR, "StopSignals", "StopSignals", "no pipe: a signal ends the program at once");
        return;
    }
    for (int const end : m_ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
    m_source = wxEventLoopBase::AddSourceForFD(m_ends[0], this, wxEVENT_SOURCE_INPUT);
    g_writeEnd = m_ends[1];
    take();
}

void StopSignals::take() {
    struct sigaction action {};
    action.sa_handler = &onStopSignal;
    action.sa_flags = SA_RESETHAND | SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < std::size(signals); ++i) {
        sigaction(signals[i], nullptr, &m_before[i]);
        // Ignored hang-ups are somebody's wish (nohup); a shell ignores SIGINT for all it runs in the
        // background.
        if (signals[i] != SIGHUP || m_before[i].sa_handler != SIG_IGN)
            sigaction(signals[i], &action, nullptr);
    }
}

StopSignals::~StopSignals() {
    if (m_ends[0] < 0)
        return;
    for (std::size_t i = 0; i < std::size(signals); ++i)
        sigaction(signals[i], &m_before[i], nullptr);
    g_writeEnd = -1;
    delete m_source;
    for (int const end : m_ends)
        close(end);
}

void StopSignals::OnReadWaiting() {
    char bytes[std::size(signals)];
    if (read(m_ends[0], bytes, sizeof bytes) > 0)
        m_onStop();
}

} // namespace quillon
