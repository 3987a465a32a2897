#include "tarvikclient/gui/model/sessionstate.h"

#include <wx/intl.h>

#include <algorithm>

namespace quillon {

namespace {

constexpr std::size_t longestName = 40;
constexpr wchar_t ellipsis = 0x2026;

bool belongsToName(wxUniChar c) {
    return c.IsAscii() && (wxIsalnum(c) || wxString(".-_:[]").Contains(c));
}

/// The end of a long name tells whose it is. Empty for what is no name.
wxString shownName(wxString const& name) {
    if (!std::all_of(name.begin(), name.end(), belongsToName))
        return wxString();
    return name.length() > longestName ? ellipsis + name.Right(longestName - 1) : name;
}

wxString withName(wxString text, wxString const& name) {
    text.Replace("{gateway}", name);
    return text;
}

wxString withTime(wxString text, wxDateTime const& time) {
    text.Replace("{time}", time.Format("%H:%M"));
    return text;
}

struct Text {
    SessionStage stage;
    char const* key;
};

/// All but the two that name the gateway.
constexpr Text texts[] = {
    // TRANSLATORS: the program's state: it waits for a link.
    {SessionStage::idle, wxTRANSLATE("STATUS_IDLE")},
    // TRANSLATORS: the program's state.
    {SessionStage::fetching, wxTRANSLATE("STATUS_DOWNLOADING_COMPENENTS")},
    // TRANSLATORS: the program's state, as long as it works for an application that needs no tunnel.
    {SessionStage::opening, wxTRANSLATE("STATE_OPENING")},
    // TRANSLATORS: the program's state: this machine is being checked.
    {SessionStage::checking, wxTRANSLATE("HOSTCHECKING")},
    // TRANSLATORS: the program's state. {time} is hours and minutes.
    {SessionStage::connected, wxTRANSLATE("STATE_CONNECTED")},
    // TRANSLATORS: the program's state: the tunnel is lost. {time} is hours and minutes.
    {SessionStage::interrupted, wxTRANSLATE("STATE_INTERRUPTED")},
    // TRANSLATORS: the program's state: the gateway does not accept who signs in.
    {SessionStage::refused, wxTRANSLATE("STATE_REFUSED")},
    // TRANSLATORS: the program's state. {time} is hours and minutes.
    {SessionStage::ended, wxTRANSLATE("STATE_ENDED")},
    // TRANSLATORS: the program's state: a dialog tells more.
    {SessionStage::failed, wxTRANSLATE("STATE_FAILED")},
    // TRANSLATORS: the program's state, while the session is given its time to end.
    {SessionStage::leaving, wxTRANSLATE("STATE_LEAVING")},
    // TRANSLATORS: the program's state: the session did not end in its time.
    {SessionStage::abandoning, wxTRANSLATE("STATE_ABANDONING")},
};

wxString asking(wxString const& gateway) {
    if (gateway.empty())
        // TRANSLATORS: the program's state, shown instead of STATE_ASKING when the name is not known.
        return _("STATE_ASKING_NO_NAME");
    // TRANSLATORS: the program's state. {gateway} is the name of the gateway's host.
    return withName(_("STATE_ASKING"), gateway);
}

wxString connecting(wxString const& gateway) {
    if (gateway.empty())
        // TRANSLATORS: the program's state, shown instead of STATE_CONNECTING when the name is not known.
        return _("STATE_CONNECTING_NO_NAME");
    // TRANSLATORS: the program's state. {gateway} is the name of the gateway's host.
    return withName(_("STATE_CONNECTING"), gateway);
}

} // namespace

bool SessionState::begin(wxString const& gateway) {
    m_gateway = shownName(gateway);
    m_stage = SessionStage::idle;
    m_stood = false;
    return enter(SessionStage::asking);
}

bool SessionState::enter(SessionStage stage) {
    if (m_stage == stage || isLeaving())
        return false;
    m_stage = stage;
    m_stood = m_stood || stage == SessionStage::connected;
    m_since = m_clock();
    return true;
}

bool SessionState::onDispatch(ClientType type) {
    switch (type) {
    case CLIENT_TYPE_HOSTCHECKER:
        return enter(SessionStage::checking);
    case CLIENT_TYPE_PLUGINDLL_NOTUNNEL:
        return enter(SessionStage::opening);
    case CLIENT_TYPE_PLUGINDLL:
        break;
    }
    return enter(SessionStage::fetching);
}

bool SessionState::onStatus(ClientStatus status) {
    switch (status) {
    case STATUS_IDLE:
        return enter(SessionStage::idle);
    case STATUS_DOWNLOADING_COMPENENTS:
        return enter(SessionStage::fetching);
    case STATUS_CONNECTED:
        return enter(SessionStage::connected);
    case STATUS_HOSTCHECKING:
        return enter(SessionStage::checking);
    case STATUS_FINISHED:
        return enter(SessionStage::ended);
    }
    return false;
}

bool SessionState::onTunnel(TunnelEvent event) {
    bool const stood = m_stage == SessionStage::connected || m_stage == SessionStage::interrupted;
    switch (event) {
    case TunnelEvent::progress:
        return enter(stood ? SessionStage::interrupted : SessionStage::connecting);
    case TunnelEvent::refused:
        return enter(SessionStage::refused);
    case TunnelEvent::connected:
        return enter(SessionStage::connected);
    case TunnelEvent::stopped:
        return enter(SessionStage::ended);
    case TunnelEvent::unknown: // but the module runs
        return m_stage == SessionStage::fetching && enter(SessionStage::connecting);
    }
    return false;
}

bool SessionState::leave() {
    return enter(SessionStage::leaving);
}

bool SessionState::abandon() {
    bool const waited = m_stage == SessionStage::leaving;
    if (waited)
        m_stage = SessionStage::abandoning;
    return waited;
}

SessionMood SessionState::mood() const {
    switch (m_stage) {
    case SessionStage::idle:
    case SessionStage::ended:
        return SessionMood::quiet;
    case SessionStage::connected:
    case SessionStage::opening:
        return SessionMood::connected;
    case SessionStage::interrupted:
    case SessionStage::refused:
    case SessionStage::failed:
    case SessionStage::abandoning:
        return SessionMood::trouble;
    case SessionStage::asking:
    case SessionStage::fetching:
    case SessionStage::checking:
    case SessionStage::connecting:
    case SessionStage::leaving:
        break;
    }
    return SessionMood::busy;
}

wxString SessionState::text() const {
    if (m_stage == SessionStage::asking)
        return asking(m_gateway);
    if (m_stage == SessionStage::connecting)
        return connecting(m_gateway);
    for (Text const& known : texts)
        if (known.stage == m_stage)
            return withTime(wxGetTranslation(known.key), m_since);
    return wxString();
}

bool SessionState::isNews() const {
    return m_stage == SessionStage::connected || m_stage == SessionStage::interrupted ||
           m_stage == SessionStage::refused || (m_stage == SessionStage::ended && m_stood);
}

bool SessionState::callsForPanel() const {
    return m_stage == SessionStage::asking || m_stage == SessionStage::failed || isLeaving();
}

bool SessionState::isOver() const {
    return m_stage == SessionStage::idle || m_stage == SessionStage::failed;
}

} // namespace quillon
