#include "tarvikclient/gui/nativedialog.h"

#include <gtk/gtk.h>
#include <wx/dialog.h>
#include <wx/menu.h>

namespace quillon {

void endNativeDialog(wxDialog& dialog) {
    GtkWidget* const widget = dialog.GetHandle();
    if (widget && GTK_IS_DIALOG(widget))
        gtk_dialog_response(GTK_DIALOG(widget), GTK_RESPONSE_CANCEL);
}

void endNativeMenu(wxMenu& menu) {
    gtk_menu_shell_cancel(GTK_MENU_SHELL(menu.m_menu));
}

} // namespace quillon
