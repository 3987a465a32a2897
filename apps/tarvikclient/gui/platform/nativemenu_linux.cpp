#include "tarvikclient/gui/platform/nativemenu.h"

#include <gtk/gtk.h>
#include <wx/menu.h>

namespace quillon {

namespace {

/// Gets what wxWidgets itself makes of a choice, and keeps it from going further.
class Deaf final : public wxEvtHandler {
public:
    bool ProcessEvent(wxEvent& event) override { return event.GetEventType() == wxEVT_MENU; }
};

struct Choice {
    wxEvtHandler& target;
    int id;
};

// It may open a dialog, and while that is open the menu may go. So the choice is carried out once the menu
// has been left.
void chosen(GtkWidget*, gpointer data) {
    auto const& [target, id] = *static_cast<Choice const*>(data);
    target.QueueEvent(new wxCommandEvent(wxEVT_MENU, id));
}

} // namespace

void endNativeMenu(wxMenu& menu) {
    gtk_menu_shell_cancel(GTK_MENU_SHELL(menu.m_menu));
}

void listenToMenu(wxMenu& menu, wxEvtHandler& target) {
    static Deaf deaf;
    menu.SetEventHandler(&deaf);
    for (wxMenuItem const* const entry : menu.GetMenuItems())
        g_signal_connect_data(
            entry->GetMenuItem(), "activate", G_CALLBACK(chosen), new Choice{target, entry->GetId()},
            [](gpointer choice, GClosure*) { delete static_cast<Choice*>(choice); }, GConnectFlags{});
}

void showMenuPictures() {
    g_object_set(gtk_settings_get_default(), "gtk-menu-images", TRUE, nullptr);
}

} // namespace quillon
