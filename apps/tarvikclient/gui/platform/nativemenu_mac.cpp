#include "tarvikclient/gui/platform/nativemenu.h"

#include <wx/menu.h>

namespace quillon {

// wxWidgets' timers rest while a menu is open: it stays until the user answers it.
void endNativeMenu(wxMenu&) {}

void listenToMenu(wxMenu& menu, wxEvtHandler& target) {
    menu.SetEventHandler(&target);
}

void showMenuPictures() {}

} // namespace quillon
