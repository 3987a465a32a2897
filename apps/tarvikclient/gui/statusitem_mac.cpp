#include "tarvikclient/gui/statusitem.h"

#include <wx/taskbar.h>

namespace quillon {

bool isStatusItem(wxTaskBarIcon& icon) {
    return icon.OSXIsStatusItem();
}

void bindTrayClick(TarvikSystrayIcon&) {}

bool isTrayAvailable() {
    return true; // the menu bar
}

int trayPollPeriod() {
    return 0;
}

class NotifierWatch::Subscription {};

NotifierWatch::NotifierWatch(Listener listener) {
    listener(false);
}

NotifierWatch::~NotifierWatch() = default;

class StatusItem::Native {};

// Never made: there is no watcher.
StatusItem::StatusItem(TarvikSystrayIcon&) {}

StatusItem::~StatusItem() = default;

void StatusItem::hide() {}

} // namespace quillon
