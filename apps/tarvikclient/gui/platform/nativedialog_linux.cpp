#include "tarvikclient/gui/platform/nativedialog.h"

#include <gtk/gtk.h>
#include <wx/dialog.h>

namespace quillon {

void endNativeDialog(wxDialog& dialog) {
    GtkWidget* const widget = dialog.GetHandle();
    if (widget && GTK_IS_DIALOG(widget))
        gtk_dialog_response(GTK_DIALOG(widget), GTK_RESPONSE_CANCEL);
}

} // namespace quillon
