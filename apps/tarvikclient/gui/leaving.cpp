#include "tarvikclient/gui/leaving.h"

#include "base/log.h"

#include <wx/window.h>

namespace quillon {

namespace {

constexpr int timerMs = 100;

} // namespace

Leaving::Leaving(wxWindow& window, ClientHolder& client, NestedLoops& loops)
    : m_window(window), m_client(client), m_loops(loops) {
    m_timer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { proceed(); });
}

void Leaving::begin() {
    announce();
    bool const again = m_quitting.begun();
    m_quitting.begin(std::chrono::steady_clock::now(), m_atWork);
    if (!again && m_progress)
        m_progress(false);
    m_loops.refuse();
    m_timer.Start(timerMs);
    endSession();
    closeIfFree();
}

void Leaving::sessionEnded() {
    announce();
    m_closing = true;
    m_timer.Start(timerMs);
    closeIfFree();
}

void Leaving::answer(wxCloseEvent& event) {
    bool const running = m_client->isRunning();
    if (!m_loops.any() && !(event.CanVeto() && running)) {
        m_loops.refuse();
        m_timer.Stop();
        event.Skip();
        return;
    }
    // The session has to end first, or a handler to return whose windows go with this one.
    if (event.CanVeto())
        event.Veto();
    else
        m_closing = true;
    begin();
}

void Leaving::withoutDisplay() {
    if (m_client->isRunning()) {
        SessionMark::expectEnd();
        m_client->stop();
        m_client->join(std::chrono::milliseconds(Quitting::grace).count());
    }
}

void Leaving::announce() const {
    if (m_announcement)
        m_announcement();
}

void Leaving::tellIfOverdue() {
    if (m_overdueTold || !m_progress || !m_quitting.isOverdue(std::chrono::steady_clock::now()))
        return;
    m_overdueTold = true;
    m_progress(true);
}

void Leaving::proceed() {
    tellIfOverdue();
    if (m_quitting.begun())
        endSession();
    closeIfFree();
}

void Leaving::endSession() {
    m_loops.endTop();
    if (!m_client->isRunning()) {
        m_closing = true;
        return;
    }
    // Again each time: a session that was asked before it had anything to stop goes on.
    m_client->stop();
    switch (m_quitting.advance(std::chrono::steady_clock::now())) {
    case Quitting::Step::wait:
        break;
    case Quitting::Step::cancel:
        m_client->cancel();
        break;
    case Quitting::Step::abandon:
        log(ERROR, "TarvikMainFrame", "endSession", "The session does not end; the program ends without it");
        m_client.giveUp();
        m_closing = true;
        break;
    }
}

void Leaving::closeIfFree() {
    if (m_closing && !m_loops.any())
        m_window.Close(true);
}

} // namespace quillon
