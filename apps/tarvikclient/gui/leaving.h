// How the program ends.
#pragma once

#include "tarvikclient/gui/clientholder.h"
#include "tarvikclient/gui/model/quitting.h"
#include "tarvikclient/gui/nestedloops.h"

#include <wx/timer.h>

#include <functional>

namespace quillon {

/// Ends the session and then closes the window that owns it, which ends the application: no sooner than the
/// session has ended and no handler of that window or of others can be on the stack, and no later than
/// Quitting's times after it began. Interface thread only.
class Leaving {
public:
    using Announcement = std::function<void()>;

    /// What is referred to must outlive the object.
    Leaving(wxWindow& window, ClientHolder& client, NestedLoops& loops);

    /// `announcement` is called, possibly several times, as soon as the end is certain.
    void announceBy(Announcement announcement) { m_announcement = std::move(announcement); }

    /// `progress` is called when the end begins, and with true once the session has had its time.
    void tellBy(std::function<void(bool overdue)> progress) { m_progress = std::move(progress); }
    /// Whether the session has something to put in order before its transfers are cut off.
    void setAtWork(bool atWork) { m_atWork = atWork; }
    /// The user wants out: ends the session, cancels the open dialogs and refuses further ones.
    void begin();
    /// Whether begin() has been called, by whomever.
    bool begun() const { return m_quitting.begun(); }
    /// The session has ended by itself: the window closes when its last dialog has.
    void sessionEnded();
    /// The window has been asked to close, and the session to stop: lets it close, or has it wait.
    void answer(wxCloseEvent& event);
    /// The display has gone and the process is about to end: only the session is given its time to end. Uses
    /// no window.
    void withoutDisplay();

private:
    void announce() const;
    void tellIfOverdue();
    void proceed();
    /// The next step of ending the session that is due.
    void endSession();
    void closeIfFree();

    wxWindow& m_window;
    ClientHolder& m_client;
    NestedLoops& m_loops;
    Announcement m_announcement;
    std::function<void(bool overdue)> m_progress;
    bool m_overdueTold = false;
    Quitting m_quitting;
    wxTimer m_timer; // runs while the session is to end or the window to close
    bool m_atWork = false;
    bool m_closing = false; // the session keeps the window no more
};

} // namespace quillon
