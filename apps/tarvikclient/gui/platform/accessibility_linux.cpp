#include "tarvikclient/gui/platform/accessibility.h"

#include <gtk/gtk.h>
#include <wx/window.h>

namespace quillon {

namespace {

/// The one that takes the keys: a list, and a text of several lines, are inside one that scrolls them.
GtkWidget* focusable(wxWindow& control) {
    GtkWidget* const widget = control.GetHandle();
    GtkWidget* const inner = GTK_IS_SCROLLED_WINDOW(widget) ? gtk_bin_get_child(GTK_BIN(widget)) : nullptr;
    if (!inner)
        return widget;
    gtk_widget_set_can_focus(widget, FALSE); // it would take them where the inner one has nothing to show
    return inner;
}

} // namespace

void setLabelOf(wxWindow& control, wxWindow& label) {
    GtkWidget* const text = label.GetHandle();
    if (GTK_IS_LABEL(text))
        gtk_label_set_mnemonic_widget(GTK_LABEL(text), focusable(control));
}

void setAccessibleName(wxWindow& control, wxString const& name) {
    atk_object_set_name(gtk_widget_get_accessible(focusable(control)), name.utf8_str());
}

void setAccessibleDescription(wxWindow& control, wxString const& description) {
    atk_object_set_description(gtk_widget_get_accessible(focusable(control)), description.utf8_str());
}

} // namespace quillon
