#include "tarvikclient/gui/model/vpnstatus.h"

#include <wx/intl.h>
#include <wx/regex.h>

namespace quillon {

namespace {

struct State {
    char const* prefix;
    char const* key;
    bool animating;
};

constexpr int mostDots = 3;

/// The first prefix that fits counts.
constexpr State states[] = {
    // TRANSLATORS: one short line in a small panel; up to three dots are put behind it while it lasts.
    {"init", wxTRANSLATE("VPN_INIT"), true},
    // TRANSLATORS: one short line in a small panel; up to three dots are put behind it while it lasts.
    {"authenticating", wxTRANSLATE("VPN_AUTHENTICATING"), true},
    // TRANSLATORS: one short line in a small panel; up to three dots are put behind it while it lasts.
    {"reconnecting", wxTRANSLATE("VPN_RECONNECTING"), true},
    // TRANSLATORS: one short line in a small panel; up to three dots are put behind it while it lasts.
    {"getconfig", wxTRANSLATE("VPN_GETCONFIG"), true},
    // TRANSLATORS: one short line in a small panel.
    {"authError", wxTRANSLATE("VPN_AUTHERROR"), false},
    // TRANSLATORS: one short line in a small panel, when the tunnel is there and no address is known.
    {"connected", wxTRANSLATE("VPN_CONNECTED"), false},
};

State const* stateOf(wxString const& line) {
    for (State const& state : states)
        if (line.StartsWith(state.prefix))
            return &state;
    return nullptr;
}

/// The address that a line carries; false when it carries none.
bool findAddress(wxString const& line, wxString& address) {
    static wxRegEx const pattern("ip=(.*)");
    size_t start = 0;
    size_t length = 0;
    if (!pattern.Matches(line) || !pattern.GetMatch(&start, &length, 1))
        return false;
    // One character more than the group, which at the end of the line is none: what has always been shown.
    address = line.Mid(start, length + 1);
    return true;
}

wxString textOf(State const& state, wxString const& line) {
    wxString address;
    if (line.StartsWith("connected") && findAddress(line, address))
        // TRANSLATORS: one short line in a small panel. %s is the address that the tunnel gave this machine.
        return wxString::Format(_("VPN_GIVENIP %s"), address);
    return wxGetTranslation(state.key);
}

} // namespace

bool VpnStatus::accept(wxString const& line) {
    if (line == m_lastVpnStatus)
        return false;
    m_lastVpnStatus = line;
    m_dotCount = 0;
    if (State const* const state = stateOf(line)) {
        m_statusText = textOf(*state, line);
        m_animating = state->animating;
    } else if (line.empty()) {
        // TRANSLATORS: one short line in a small panel.
        m_statusText = _("VPN_STOPPED");
        m_animating = false;
    }
    return true;
}

bool VpnStatus::advance() {
    if (!m_animating)
        return false;
    m_dotCount = (m_dotCount + 1) % (mostDots + 1);
    return true;
}

wxString VpnStatus::text() const {
    return m_statusText + wxString('.', static_cast<size_t>(m_dotCount));
}

} // namespace quillon
