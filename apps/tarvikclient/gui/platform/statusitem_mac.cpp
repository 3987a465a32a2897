#include "tarvikclient/gui/platform/statusitem.h"

namespace quillon {

class StatusItem::Native {};

// Never made: there is no watcher.
StatusItem::StatusItem(wxMenu const&, wxEvtHandler&, StatusLook const&) {}

StatusItem::~StatusItem() = default;

void StatusItem::setLook(StatusLook const&) {}

void StatusItem::hide() {}

} // namespace quillon
