// What the panel says of the tunnel's state.
#pragma once

#include <wx/string.h>

#include <optional>

namespace quillon {

/// What a status line means for the session.
enum class TunnelEvent {
    unknown,  ///< the last state stays
    progress, ///< on its way, for the first time or again
    refused,  ///< the gateway does not take who asks
    connected,
    stopped
};

/// Turns the module's status lines into translated text. No window; one thread.
class VpnStatus {
public:
    /// Takes a status line; false when it repeats the last one, and nothing changes.
    bool accept(wxString const& line);
    /// One step of the dots; false when the state has none.
    bool advance();
    /// The text as it is to be shown, dots included.
    wxString text() const;
    /// What the last line that was understood means.
    TunnelEvent event() const { return m_event; }
    /// The address that the tunnel gave this machine, as long as it stands; empty where it is not known.
    wxString const& address() const { return m_address; }

private:
    void take(TunnelEvent event, wxString const& text);
    void takeAddress(std::optional<wxString> const& address);

    wxString m_statusText;
    wxString m_lastVpnStatus;
    wxString m_address;
    TunnelEvent m_event = TunnelEvent::unknown;
    int m_dotCount = 0;
};

} // namespace quillon
