#include "tarvikclient/gui/platform/statusitem.h"

#include <wx/menu.h>

namespace quillon {

class NotifierWatch::Subscription {};

NotifierWatch::NotifierWatch(Listener listener) {
    listener(false);
}

NotifierWatch::~NotifierWatch() = default;

class StatusItem::Native {};

// Never made: there is no watcher.
StatusItem::StatusItem(MenuMaker, wxEvtHandler&) {}

StatusItem::~StatusItem() = default;

void StatusItem::hide() {}

} // namespace quillon
