#include "tarvikclient/gui/platform/toplevel.h"

#include <gtk/gtk.h>
#include <wx/dialog.h>

namespace quillon {

void keepFocusElsewhere(wxTopLevelWindow& window) {
    gtk_window_set_focus_on_map(GTK_WINDOW(window.GetHandle()), FALSE);
}

void listInTaskBar(wxTopLevelWindow& window, bool listed) {
    gtk_window_set_skip_taskbar_hint(GTK_WINDOW(window.GetHandle()), !listed);
    gtk_window_set_skip_pager_hint(GTK_WINDOW(window.GetHandle()), !listed);
}

bool moveWithMouse(wxTopLevelWindow& window) {
    GdkSeat* const seat = gdk_display_get_default_seat(gdk_display_get_default());
    int x = 0;
    int y = 0;
    gdk_device_get_position(gdk_seat_get_pointer(seat), nullptr, &x, &y);
    gtk_window_begin_move_drag(GTK_WINDOW(window.GetHandle()), GDK_BUTTON_PRIMARY, x, y,
                               gtk_get_current_event_time());
    return true;
}

namespace {

void joinDialogs(GtkWidget* widget, gpointer) {
    static GtkWindowGroup* const dialogs = gtk_window_group_new();
    gtk_window_group_add_window(dialogs, GTK_WINDOW(widget));
}

} // namespace

// GTK's modal windows lock up those of their group, which is the whole program's unless there is another. Not
// before the dialog comes up: it leaves its group when it gets its parent, and wxWidgets gives it that last.
void lockUpDialogsOnly(wxDialog& dialog) {
    GtkWidget* const widget = dialog.GetHandle();
    if (widget && GTK_IS_WINDOW(widget))
        g_signal_connect(widget, "show", G_CALLBACK(joinDialogs), nullptr);
}

} // namespace quillon
