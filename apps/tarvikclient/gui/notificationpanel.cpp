#include "tarvikclient/gui/notificationpanel.h"

#include "tarvikclient/gui/model/strangerstext.h"
#include "tarvikclient/gui/nestedloops.h"
#include "tarvikclient/gui/platform/desktopnotification.h"
#include "tarvikclient/gui/platform/toplevel.h"
#include "tarvikclient/gui/systray.h"

#include <wx/button.h>
#include <wx/clipbrd.h>
#include <wx/graphics.h>
#include <wx/intl.h>
#include <wx/menu.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>
#include <wx/utils.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

namespace quillon {

namespace {

constexpr int stepMs = 1000;
constexpr unsigned fadeMs = 10;
constexpr double cornerRadius = 10.0;
// More comes from nowhere but a module that means no good, and is more than a window system can draw.
constexpr std::size_t longestText = 1000;

/// In one line, without what nobody sees.
wxString flattened(wxString const& text) {
    wxString line = strangersLines(text.Left(longestText));
    for (char const* const separator : {"\n", "\t"})
        line.Replace(separator, " ");
    return line;
}

} // namespace

TarvikClientNotificationPanel::TarvikClientNotificationPanel(wxWindow* parent)
    : NotificationPanel(parent), timer(this) {
    keepFocusElsewhere(*this);
    Bind(wxEVT_TIMER, &TarvikClientNotificationPanel::onTimer, this, timer.GetId());
    timer.Start(stepMs);
    Bind(wxEVT_CLOSE_WINDOW, &TarvikClientNotificationPanel::onClose, this);
    Bind(wxEVT_CHAR_HOOK, &TarvikClientNotificationPanel::onKey, this);
    menuButton->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { popUpMenu(); });
    addressButton->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { copyAddress(); });
    listenTo(*this);
    layOut();
}

void TarvikClientNotificationPanel::listenTo(wxWindow& window) {
    window.Bind(wxEVT_LEFT_DOWN, &TarvikClientNotificationPanel::onPress, this);
    window.Bind(wxEVT_MOTION, &TarvikClientNotificationPanel::onDrag, this);
    window.Bind(wxEVT_LEFT_UP, &TarvikClientNotificationPanel::onClick, this);
    window.Bind(wxEVT_RIGHT_UP, &TarvikClientNotificationPanel::onRightClick, this);
    window.Bind(wxEVT_CONTEXT_MENU, &TarvikClientNotificationPanel::onContextMenu, this);
    for (wxWindow* const child : window.GetChildren())
        if (!child->AcceptsFocus()) // a button has its own use for the mouse
            listenTo(*child);
}

void TarvikClientNotificationPanel::setState(wxString const& text) {
    setText(*stateLabel, flattened(text));
    layOut();
}

void TarvikClientNotificationPanel::onVpnStatus(wxThreadEvent& event) {
    event.Skip();
    if (!m_status.accept(event.GetString()))
        return;
    m_shown.request();
    reveal();
}

void TarvikClientNotificationPanel::updateVpnStatus() {
    if (m_status.advance())
        showStatus();
}

void TarvikClientNotificationPanel::onTimer(wxTimerEvent&) {
    updateVpnStatus();
}

void TarvikClientNotificationPanel::reset() {
    m_status = VpnStatus();
    for (wxStaticText* const label : {stateLabel, statusLabel})
        label->SetMinSize(wxDefaultSize);
    showStatus();
}

void TarvikClientNotificationPanel::reveal() {
    m_awaited = m_behind && !IsShown();
    if (!m_awaited)
        ShowWithEffect(wxSHOW_EFFECT_BLEND, fadeMs);
}

void TarvikClientNotificationPanel::stayBehind(bool dialogsOpen) {
    m_behind = dialogsOpen;
    SetWindowStyleFlag(dialogsOpen ? GetWindowStyleFlag() & ~wxSTAY_ON_TOP
                                   : GetWindowStyleFlag() | wxSTAY_ON_TOP);
    if (!m_behind && m_awaited)
        reveal();
}

void TarvikClientNotificationPanel::onPress(wxMouseEvent& event) {
    m_pressedAt = wxGetMousePosition();
    event.Skip();
}

void TarvikClientNotificationPanel::onDrag(wxMouseEvent& event) {
    event.Skip();
    if (!m_menuOwner || !event.LeftIsDown() || m_pressedAt == wxDefaultPosition)
        return;
    wxPoint const way = wxGetMousePosition() - m_pressedAt;
    if (std::max(std::abs(way.x), std::abs(way.y)) < wxSystemSettings::GetMetric(wxSYS_DRAG_X, this))
        return;
    m_pressedAt = wxDefaultPosition;
    m_moved = moveWithMouse(*this);
}

void TarvikClientNotificationPanel::onClick(wxMouseEvent&) {
    if (m_menuOwner)
        popUpMenu();
    else
        Show(false);
}

void TarvikClientNotificationPanel::onClose(wxCloseEvent&) {
    putAway(); // the main frame owns the panel and shows it again
}

void TarvikClientNotificationPanel::onContextMenu(wxContextMenuEvent&) {
    popUpMenu();
}

void TarvikClientNotificationPanel::onRightClick(wxMouseEvent&) {
    popUpMenu();
}

void TarvikClientNotificationPanel::onKey(wxKeyEvent& event) {
    int const key = event.GetKeyCode();
    if (key == WXK_ESCAPE)
        putAway();
    else if (key == WXK_WINDOWS_MENU || key == WXK_MENU || (key == WXK_F10 && event.ShiftDown()))
        popUpMenu();
    else
        event.Skip();
}

void TarvikClientNotificationPanel::putAway() {
    Show(false);
    if (m_menuOwner)
        // TRANSLATORS: a notification, when the user has put the program's only window away.
        showDesktopNotification(_("TarvikClient"), _("PANEL_PUT_AWAY"));
}

void TarvikClientNotificationPanel::popUpMenu() {
    // One click may arrive both as the button's event and as the menu's.
    if (!m_menuOwner || MenuLoop::isRunning())
        return;
    std::unique_ptr<wxMenu> const menu(m_menuOwner->CreatePopupMenu());
    MenuLoop const loop(*menu);
    PopupMenu(menu.get());
}

void TarvikClientNotificationPanel::copyAddress() {
    wxClipboardLocker const clipboard;
    if (!clipboard)
        return;
    wxTheClipboard->SetData(new wxTextDataObject(flattened(m_status.address())));
}

void TarvikClientNotificationPanel::carryMenu(TarvikSystrayIcon* icon) {
    bool const before = std::exchange(m_menuOwner, icon) != nullptr;
    menuButton->Show(icon);
    // TRANSLATORS: the program's name.
    SetTitle(icon ? _("TarvikClient") : wxString());
    listInTaskBar(*this, icon);
    layOut();
    if (icon)
        reveal();
    else if (before && m_status.text().empty())
        Show(false); // it was there for the menu alone
}

wxString TarvikClientNotificationPanel::statusLine() const {
    return flattened(m_status.text());
}

void TarvikClientNotificationPanel::showStatus() {
    wxString const text = statusLine();
    setText(*statusLabel, text);
    statusPicture->Show(!text.empty());
    addressButton->Show(!m_status.address().empty());
    layOut();
}

// Grows with its text, but does not shrink with each word: it would jump about.
void TarvikClientNotificationPanel::setText(wxStaticText& label, wxString const& text) {
    label.SetLabelText(text);
    int const width = std::max(label.GetTextExtent(text).x + label.GetCharWidth(), label.GetMinSize().x);
    label.SetMinSize(wxSize(width, -1));
}

void TarvikClientNotificationPanel::explain(wxStaticText& label) {
    wxString const text = label.GetLabelText();
    if (label.GetTextExtent(text).x > label.GetSize().x)
        label.SetToolTip(text);
    else
        label.UnsetToolTip();
}

void TarvikClientNotificationPanel::layOut() {
    wxSize wanted = GetMinSize();
    if (GetSizer())
        wanted.IncTo(GetSizer()->GetMinSize());
    wanted.DecTo(wxGetClientDisplayRect().GetSize());
    if (GetClientSize() != wanted)
        SetClientSize(wanted);
    Layout();
    explain(*stateLabel);
    explain(*statusLabel);
    place();
}

void TarvikClientNotificationPanel::place() {
    wxSize const size = GetSize();
    wxRect const area = wxGetClientDisplayRect(); // changes as screens come and go
    if (size == m_placedSize && area == m_placedIn)
        return;
    m_placedSize = size;
    m_placedIn = area;
    wxPoint corner(std::max(area.x, area.x + area.width - 1 - size.x), area.y);
    if (m_moved) {
        wxPoint const now = GetPosition();
        corner.x = std::clamp(now.x, area.x, corner.x);
        corner.y = std::clamp(now.y, area.y, std::max(area.y, area.GetBottom() - size.y));
    }
    Move(corner);
    wxGraphicsPath path = wxGraphicsRenderer::GetDefaultRenderer()->CreatePath();
    path.AddRoundedRectangle(0, 0, size.x, size.y, cornerRadius);
    SetShape(path);
}

} // namespace quillon
