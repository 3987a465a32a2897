#include "tarvikclient/gui/platform/stocklabels.h"

#include <gtk/gtk.h>
#include <wx/stockitem.h>

namespace quillon {

namespace {

struct Label {
    wxWindowID id;
    char const* stock;
};

constexpr Label labels[] = {{wxID_OK, "gtk-ok"},         {wxID_CANCEL, "gtk-cancel"}, {wxID_YES, "gtk-yes"},
                            {wxID_NO, "gtk-no"},         {wxID_CLOSE, "gtk-close"},   {wxID_ADD, "gtk-add"},
                            {wxID_REMOVE, "gtk-remove"}, {wxID_COPY, "gtk-copy"},     {wxID_SAVE, "gtk-save"},
                            {wxID_EXIT, "gtk-quit"}};

/// With GTK's mark for the letter that chooses it.
wxString markedForGtk(wxString label) {
    label.Replace("_", "__");
    label.Replace("&", "_");
    return label;
}

} // namespace

void useOwnStockLabels() {
    for (Label const& label : labels) {
        std::string id = label.stock;
        std::string text = markedForGtk(wxGetStockLabel(label.id, wxSTOCK_WITH_MNEMONIC)).utf8_string();
        GtkStockItem const item = {id.data(), text.data(), GdkModifierType(), 0, nullptr};
        G_GNUC_BEGIN_IGNORE_DEPRECATIONS // wxWidgets uses them as well
            gtk_stock_add(&item, 1);
        G_GNUC_END_IGNORE_DEPRECATIONS
    }
}

} // namespace quillon
