#include "tarvikclient/gui/nativedialog.h"

namespace quillon {

// wxWidgets keeps no hold on a running alert, and its timers rest while a menu is open: both stay until the
// user answers them.
void endNativeDialog(wxDialog&) {}

void endNativeMenu(wxMenu&) {}

} // namespace quillon
