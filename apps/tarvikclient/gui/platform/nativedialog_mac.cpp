#include "tarvikclient/gui/platform/nativedialog.h"

namespace quillon {

// wxWidgets keeps no hold on a running alert: it stays until the user answers it.
void endNativeDialog(wxDialog&) {}

} // namespace quillon
