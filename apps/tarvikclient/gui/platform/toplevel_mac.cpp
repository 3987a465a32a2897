#include "tarvikclient/gui/platform/toplevel.h"

namespace quillon {

void keepFocusElsewhere(wxTopLevelWindow&) {}

// There is none.
void listInTaskBar(wxTopLevelWindow&, bool) {}

bool moveWithMouse(wxTopLevelWindow&) {
    return false;
}

// The status item's menu is open to the user whatever dialog there is.
void lockUpDialogsOnly(wxDialog&) {}

} // namespace quillon
