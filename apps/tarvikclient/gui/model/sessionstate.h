// What the client is doing, in a person's words.
#pragma once

#include "tarvikclient/clientnotify.h"
#include "tarvikclient/gui/model/vpnstatus.h"

#include <wx/datetime.h>
#include <wx/string.h>

#include <functional>

namespace quillon {

/// What a session is at, from the click on a link to its end.
enum class SessionStage {
    idle,        ///< there is none
    asking,      ///< the gateway is asked what to do
    fetching,    ///< modules come from the gateway
    opening,     ///< a module without a tunnel is fetched and does its work, of which it says nothing
    checking,    ///< this computer is checked
    connecting,  ///< the tunnel is on its way
    connected,   ///< it stands
    interrupted, ///< it stood, and is to stand again
    refused,     ///< the gateway does not take who asks
    ended,       ///< there is no tunnel any more
    failed,      ///< the session ended on an error, which a dialog tells
    leaving,     ///< the user wants out, and the session has its time to end
    abandoning   ///< it had its time, and the program ends without it
};

/// How the status icon looks.
enum class SessionMood { quiet, busy, connected, trouble };

/// Follows one session after the other by the client's notifications and the user's orders. No window; one
/// thread.
class SessionState {
public:
    using Clock = std::function<wxDateTime()>;

    explicit SessionState(Clock clock = &wxDateTime::Now) : m_clock(std::move(clock)) {}

    // Each says whether anything has changed.

    /// A session starts with the gateway of that name, which comes out of a link: a name that no host can
    /// have is not shown.
    bool begin(wxString const& gateway);
    bool onDispatch(ClientType type);
    bool onStatus(ClientStatus status);
    bool onTunnel(TunnelEvent event);
    bool fail() { return enter(SessionStage::failed); }
    bool leave();
    /// The session did not end in time.
    bool abandon();

    SessionStage stage() const { return m_stage; }
    SessionMood mood() const;
    /// One line in the interface's language.
    wxString text() const;
    /// Whether somebody who looks elsewhere should be notified.
    bool isNews() const;
    /// Whether the panel should come up again, though it has been put away.
    bool callsForPanel() const;
    /// Whether there is no session any more, nor one to come.
    bool isOver() const;

private:
    bool enter(SessionStage stage);
    bool isLeaving() const { return m_stage == SessionStage::leaving || m_stage == SessionStage::abandoning; }

    Clock m_clock;
    SessionStage m_stage = SessionStage::idle;
    wxDateTime m_since;
    bool m_stood = false; // there has been a tunnel
    wxString m_gateway;   // empty where it has none to be shown
};

} // namespace quillon
