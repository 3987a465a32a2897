#include "tarvikclient/gui/platform/tray.h"

#include <gdk/gdkx.h>
#include <wx/taskbar.h>

namespace quillon {

bool isStatusItem(wxTaskBarIcon&) {
    return true;
}

void bindTrayClick(wxTaskBarIcon& icon) {
    // GTK says that the icon was activated, which wxWidgets passes on as the button going down; no up
    // follows.
    icon.Bind(wxEVT_TASKBAR_LEFT_DOWN, [&icon](wxTaskBarIconEvent&) {
        wxTaskBarIconEvent up(wxEVT_TASKBAR_LEFT_UP, &icon);
        icon.ProcessEvent(up);
    });
}

bool isTrayAvailable() {
    // The tray is an X11 matter; elsewhere wxWidgets has nothing to ask.
    return GDK_IS_X11_DISPLAY(gdk_display_get_default()) && wxTaskBarIcon::IsAvailable();
}

int trayPollPeriod() {
    return 2000;
}

} // namespace quillon
