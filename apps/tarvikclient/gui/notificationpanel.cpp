#include "tarvikclient/gui/notificationpanel.h"

#include "tarvikclient/gui/nestedloops.h"
#include "tarvikclient/gui/platform/desktopnotification.h"
#include "tarvikclient/gui/platform/display.h"
#include "tarvikclient/gui/systray.h"

#include <wx/dcclient.h>
#include <wx/graphics.h>
#include <wx/intl.h>
#include <wx/menu.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <algorithm>
#include <memory>

namespace quillon {

namespace {

constexpr int stepMs = 1000;
constexpr unsigned fadeMs = 10;
constexpr double cornerRadius = 10.0;

} // namespace

TarvikClientNotificationPanel::TarvikClientNotificationPanel(wxWindow* parent)
    : NotificationPanel(parent), timer(this) {
    Bind(wxEVT_TIMER, &TarvikClientNotificationPanel::onTimer, this, timer.GetId());
    timer.Start(stepMs);
    Bind(wxEVT_CLOSE_WINDOW, &TarvikClientNotificationPanel::onClose, this);
    listenTo(*this);
    layOut();
}

void TarvikClientNotificationPanel::listenTo(wxWindow& window) {
    window.Bind(wxEVT_LEFT_UP, &TarvikClientNotificationPanel::onClick, this);
    window.Bind(wxEVT_RIGHT_UP, &TarvikClientNotificationPanel::onRightClick, this);
    window.Bind(wxEVT_CONTEXT_MENU, &TarvikClientNotificationPanel::onContextMenu, this);
    for (wxWindow* const child : window.GetChildren())
        listenTo(*child);
}

void TarvikClientNotificationPanel::onVpnStatus(wxThreadEvent& event) {
    if (!m_status.accept(event.GetString()))
        return;
    ShowWithEffect(wxSHOW_EFFECT_BLEND, fadeMs);
    showStatus();
    // Where the desktop decides what lies in front, the panel may have come up behind everything else.
    if (!windowsCanBePlaced())
        // TRANSLATORS: the program's name.
        showDesktopNotification(_("TarvikClient"), statusLine());
}

void TarvikClientNotificationPanel::updateVpnStatus() {
    if (m_status.advance())
        showStatus();
}

void TarvikClientNotificationPanel::onTimer(wxTimerEvent&) {
    updateVpnStatus();
}

void TarvikClientNotificationPanel::onClick(wxMouseEvent&) {
    if (!m_menuOwner)
        Show(false);
}

void TarvikClientNotificationPanel::onClose(wxCloseEvent&) {
    // The main frame owns the panel and shows it again.
    if (!m_menuOwner)
        Show(false);
}

void TarvikClientNotificationPanel::onContextMenu(wxContextMenuEvent&) {
    popUpMenu();
}

void TarvikClientNotificationPanel::onRightClick(wxMouseEvent&) {
    popUpMenu();
}

void TarvikClientNotificationPanel::popUpMenu() {
    // One click may arrive both as the button's event and as the menu's.
    if (!m_menuOwner || MenuLoop::isRunning())
        return;
    std::unique_ptr<wxMenu> const menu(m_menuOwner->CreatePopupMenu());
    MenuLoop const loop(*menu);
    PopupMenu(menu.get());
}

void TarvikClientNotificationPanel::carryMenu(TarvikSystrayIcon* icon) {
    m_menuOwner = icon;
    showStatus();
    if (icon)
        Show(true);
    else if (m_status.text().empty())
        Show(false); // it was there for the menu alone
}

wxString TarvikClientNotificationPanel::statusLine() const {
    wxString line = m_status.text();
    if (line.empty() && m_menuOwner)
        // TRANSLATORS: one short line in a small panel, shown before the tunnel has any state.
        line = _("STATUS_IDLE");
    for (char const* const separator : {"\r", "\n", "\t"})
        line.Replace(separator, " ");
    return line;
}

int TarvikClientNotificationPanel::widthForStatus() const {
    wxSizer const* const row = statusLabel->GetContainingSizer();
    wxSizerItem const* const item = row ? const_cast<wxSizer*>(row)->GetItem(statusLabel) : nullptr;
    return GetClientSize().x - statusLabel->GetPosition().x - (item ? item->GetBorder() : 0);
}

void TarvikClientNotificationPanel::showStatus() {
    wxString const whole = statusLine();
    wxClientDC dc(statusLabel);
    dc.SetFont(statusLabel->GetFont());
    wxString const shown =
        wxControl::Ellipsize(whole, dc, wxELLIPSIZE_END, widthForStatus(), wxELLIPSIZE_FLAGS_NONE);
    statusLabel->SetLabelText(shown);
    if (shown == whole)
        statusLabel->UnsetToolTip();
    else
        statusLabel->SetToolTip(whole);
    layOut();
}

void TarvikClientNotificationPanel::layOut() {
    wxSize wanted = GetMinSize();
    if (GetSizer())
        wanted.IncTo(GetSizer()->GetMinSize());
    wanted.DecTo(wxGetClientDisplayRect().GetSize());
    if (GetClientSize() != wanted)
        SetClientSize(wanted);
    Layout();
    place();
}

void TarvikClientNotificationPanel::place() {
    wxSize const size = GetSize();
    wxRect const area = wxGetClientDisplayRect(); // changes as screens come and go
    if (size == m_placedSize && area == m_placedIn)
        return;
    m_placedSize = size;
    m_placedIn = area;
    Move(area.x + area.width - 1 - size.x, area.y);
    wxGraphicsPath path = wxGraphicsRenderer::GetDefaultRenderer()->CreatePath();
    path.AddRoundedRectangle(0, 0, size.x, size.y, cornerRadius);
    SetShape(path);
}

} // namespace quillon
