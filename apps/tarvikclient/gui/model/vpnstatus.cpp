#include "tarvikclient/gui/model/vpnstatus.h"

#include <wx/intl.h>
#include <wx/regex.h>

namespace quillon {

namespace {

struct State {
    char const* prefix;
    char const* key;
    TunnelEvent event;
};

constexpr int mostDots = 3;

/// The first prefix that fits counts.
constexpr State states[] = {
    // TRANSLATORS: one short line in a small panel; up to three dots are put behind it while it lasts.
    {"init", wxTRANSLATE("VPN_INIT"), TunnelEvent::progress},
    // TRANSLATORS: one short line in a small panel; up to three dots are put behind it while it lasts.
    {"authenticating", wxTRANSLATE("VPN_AUTHENTICATING"), TunnelEvent::progress},
    // TRANSLATORS: one short line in a small panel; up to three dots are put behind it while it lasts.
    {"reconnecting", wxTRANSLATE("VPN_RECONNECTING"), TunnelEvent::progress},
    // TRANSLATORS: one short line in a small panel; up to three dots are put behind it while it lasts.
    {"getconfig", wxTRANSLATE("VPN_GETCONFIG"), TunnelEvent::progress},
    // TRANSLATORS: one short line in a small panel.
    {"authError", wxTRANSLATE("VPN_AUTHERROR"), TunnelEvent::refused},
    // TRANSLATORS: one short line in a small panel, when the tunnel is there and no address is known.
    {"connected", wxTRANSLATE("VPN_CONNECTED"), TunnelEvent::connected},
};

State const* stateOf(wxString const& line) {
    for (State const& state : states)
        if (line.StartsWith(state.prefix))
            return &state;
    return nullptr;
}

/// The address that a line carries, which may be empty.
std::optional<wxString> addressIn(wxString const& line) {
    static wxRegEx const pattern("ip=(.*)");
    size_t start = 0;
    size_t length = 0;
    if (!pattern.Matches(line) || !pattern.GetMatch(&start, &length, 1))
        return std::nullopt;
    // One character more than the group, which at the end of the line is none: what has always been shown.
    return line.Mid(start, length + 1);
}

} // namespace

bool VpnStatus::accept(wxString const& line) {
    if (line == m_lastVpnStatus)
        return false;
    m_lastVpnStatus = line;
    m_dotCount = 0;
    if (State const* const state = stateOf(line)) {
        take(state->event, wxGetTranslation(state->key));
        if (m_event == TunnelEvent::connected)
            takeAddress(addressIn(line));
    } else if (line.empty()) {
        // TRANSLATORS: one short line in a small panel.
        take(TunnelEvent::stopped, _("VPN_STOPPED"));
    }
    return true;
}

void VpnStatus::take(TunnelEvent event, wxString const& text) {
    m_event = event;
    m_statusText = text;
    m_address.clear();
}

void VpnStatus::takeAddress(std::optional<wxString> const& address) {
    if (!address)
        return;
    m_address = *address;
    // TRANSLATORS: one short line in a small panel. %s is the address that the tunnel gave this machine.
    m_statusText = wxString::Format(_("VPN_GIVENIP %s"), m_address);
}

bool VpnStatus::advance() {
    if (m_event != TunnelEvent::progress)
        return false;
    m_dotCount = (m_dotCount + 1) % (mostDots + 1);
    return true;
}

wxString VpnStatus::text() const {
    return m_statusText + wxString('.', static_cast<size_t>(m_dotCount));
}

} // namespace quillon
