#include "tarvikclient/gui/platform/textfield.h"

#include <gtk/gtk.h>
#include <wx/textctrl.h>

namespace quillon {

int heightOfField(wxTextCtrl& field) {
    int natural = 0;
    gtk_widget_get_preferred_height(field.GetHandle(), nullptr, &natural);
    return natural;
}

} // namespace quillon
