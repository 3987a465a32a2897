#include "tarvikclient/gui/platform/nativemenu.h"

#include <gtk/gtk.h>
#include <wx/menu.h>

namespace quillon {

void endNativeMenu(wxMenu& menu) {
    gtk_menu_shell_cancel(GTK_MENU_SHELL(menu.m_menu));
}

void showMenuPictures() {
    g_object_set(gtk_settings_get_default(), "gtk-menu-images", TRUE, nullptr);
}

} // namespace quillon
