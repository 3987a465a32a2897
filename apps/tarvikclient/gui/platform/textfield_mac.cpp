#include "tarvikclient/gui/platform/textfield.h"

#include <wx/textctrl.h>

namespace quillon {

int heightOfField(wxTextCtrl& field) {
    return field.GetBestSize().y;
}

} // namespace quillon
