#include "tarvikclient/gui/platform/nativemenu.h"

namespace quillon {

// wxWidgets' timers rest while a menu is open: it stays until the user answers it.
void endNativeMenu(wxMenu&) {}

void showMenuPictures() {}

} // namespace quillon
