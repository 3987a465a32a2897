#include "tarvikclient/gui/platform/tray.h"

#include <wx/taskbar.h>

namespace quillon {

bool isStatusItem(wxTaskBarIcon& icon) {
    return icon.OSXIsStatusItem();
}

void bindTrayClick(wxTaskBarIcon&) {}

bool isTrayAvailable() {
    return true; // the menu bar
}

int trayPollPeriod() {
    return 0;
}

} // namespace quillon
