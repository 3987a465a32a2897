#include "tarvikclient/gui/platform/stopsignals.h"

#include "base/log.h"
#include "tarvikclient/sessionmark.h"

#include <atomic>
#include <system_error>

namespace quillon {

namespace {

std::atomic<SelfPipe*> g_pipe{nullptr};

extern "C" void onStopSignal(int) {
    SessionMark::expectEnd(); // the next one of its kind may end the process
    if (SelfPipe* const pipe = g_pipe)
        pipe->wake();
}

} // namespace

StopSignals::StopSignals(std::function<void()> onStop) : m_onStop(std::move(onStop)) {
    try {
        m_pipe.emplace();
    } catch (std::system_error const&) {
        log(ERROR, "StopSignals", "StopSignals", "no pipe: a signal ends the program at once");
        return;
    }
    m_source.reset(wxEventLoopBase::AddSourceForFD(m_pipe->readEnd(), this, wxEVENT_SOURCE_INPUT));
    g_pipe = &*m_pipe;
    take();
}

void StopSignals::take() {
    struct sigaction action {};
    action.sa_handler = &onStopSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
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
    if (!m_pipe)
        return;
    for (std::size_t i = 0; i < std::size(signals); ++i)
        sigaction(signals[i], &m_before[i], nullptr);
    g_pipe = nullptr;
}

void StopSignals::OnReadWaiting() {
    if (m_pipe->take())
        m_onStop();
}

} // namespace quillon
