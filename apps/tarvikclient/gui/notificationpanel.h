// The panel in the corner of the screen.
#pragma once

#include "tarvikclient/gui/guielements.h"
#include "tarvikclient/gui/model/vpnstatus.h"

#include <wx/timer.h>

namespace quillon {

class TarvikSystrayIcon;

/// Tells how the tunnel is doing, until it is clicked away. Interface thread only.
class TarvikClientNotificationPanel : public NotificationPanel {
public:
    explicit TarvikClientNotificationPanel(wxWindow* parent);

    /// The event's string is the module's status line. A repeated line changes nothing.
    void onVpnStatus(wxThreadEvent& event);
    /// One step of the dots that follow the text of a state in progress.
    void updateVpnStatus();
    void onTimer(wxTimerEvent& event);
    void onClick(wxMouseEvent& event);

    /// Where the desktop shows no status icon, the panel stands in for it: it is shown at once, stays when it
    /// is clicked, and its context click opens the menu of `icon`. A null pointer ends that. `icon` is not
    /// owned.
    void carryMenu(TarvikSystrayIcon* icon);

private:
    /// The panel's events come to whichever of its controls lies under the mouse.
    void listenTo(wxWindow& window);
    void onContextMenu(wxContextMenuEvent& event);
    void onRightClick(wxMouseEvent& event);
    void onClose(wxCloseEvent& event);
    void popUpMenu();

    void showStatus();
    /// The status text, in full and in one line.
    wxString statusLine() const;
    int widthForStatus() const;
    void layOut();
    /// Puts the panel into its corner, with its shape.
    void place();

    VpnStatus m_status;
    wxTimer timer;
    TarvikSystrayIcon* m_menuOwner = nullptr;
    // What its place and shape were made for.
    wxSize m_placedSize;
    wxRect m_placedIn;
};

} // namespace quillon
