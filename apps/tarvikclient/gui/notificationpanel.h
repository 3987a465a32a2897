// The panel in the corner of the screen.
#pragma once

#include "tarvikclient/gui/guielements.h"
#include "tarvikclient/gui/model/vpnstatus.h"
#include "tarvikclient/gui/throttle.h"

#include <wx/timer.h>

namespace quillon {

class TarvikSystrayIcon;

/// Tells what the client is doing and how the tunnel is, until it is clicked away. Interface thread only.
class TarvikClientNotificationPanel : public NotificationPanel {
public:
    explicit TarvikClientNotificationPanel(wxWindow* parent);

    /// What the client is doing, in one line.
    void setState(wxString const& text);
    /// The event's string is the module's status line, and shows the panel. A repeated line changes nothing.
    void onVpnStatus(wxThreadEvent& event);
    VpnStatus const& status() const { return m_status; }
    /// The tunnel's state in full, without the dots that run.
    wxString statusLine() const;
    /// One step of the dots that follow the text of a state in progress.
    void updateVpnStatus();
    void onTimer(wxTimerEvent& event);
    void onClick(wxMouseEvent& event);

    /// Forgets the tunnel of the session before.
    void reset();
    /// Shows the panel, or does so once it need not stay behind.
    void reveal();
    /// While dialogs are open the panel does not come up, and does not lie over them where it is up already.
    void stayBehind(bool dialogsOpen);

    /// Where the desktop shows no status icon, the panel stands in for it: it is shown at once and listed in
    /// the task bar, can be moved, and its button, a click, or the keys for a menu open the menu of `icon`. A
    /// null pointer ends that. `icon` is not owned.
    void carryMenu(TarvikSystrayIcon* icon);

private:
    /// The panel's events come to whichever of its controls lies under the mouse.
    void listenTo(wxWindow& window);
    void onPress(wxMouseEvent& event);
    void onDrag(wxMouseEvent& event);
    void onContextMenu(wxContextMenuEvent& event);
    void onRightClick(wxMouseEvent& event);
    void onKey(wxKeyEvent& event);
    void onClose(wxCloseEvent& event);
    void popUpMenu();
    void putAway();
    void copyAddress();

    void showStatus();
    void setText(wxStaticText& label, wxString const& text);
    /// A label that the screen cuts off has its text in full behind it.
    void explain(wxStaticText& label);
    void layOut();
    /// Puts the panel into its corner, or back onto the screen, with its shape.
    void place();

    VpnStatus m_status;
    Throttle m_shown{[this] { showStatus(); }};
    wxTimer timer;
    TarvikSystrayIcon* m_menuOwner = nullptr;
    bool m_behind = false;
    bool m_awaited = false; // to be shown when it need not stay behind any more
    wxPoint m_pressedAt = wxDefaultPosition;
    bool m_moved = false; // by the user, who is left to it
    // What its place and shape were made for.
    wxSize m_placedSize;
    wxRect m_placedIn;
};

} // namespace quillon
