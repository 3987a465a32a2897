#include "tarvikclient/gui/platform/menuonbus_linux.h"

#include "tarvikclient/gobjectpointer_linux.h"

#include <libdbusmenu-glib/client.h>
#include <libdbusmenu-glib/menuitem.h>
#include <libdbusmenu-glib/server.h>
#include <wx/image.h>
#include <wx/menu.h>
#include <wx/mstream.h>

namespace quillon {

namespace {

/// The letter that chooses the entry stands behind "_" here.
wxString labelOnBus(wxMenuItem const& entry) {
    wxString label = entry.GetItemLabel().BeforeFirst('\t');
    label.Replace("_", "__");
    label.Replace("&", "_");
    return label;
}

void setPicture(DbusmenuMenuitem* item, wxBitmap const& picture) {
    wxMemoryOutputStream png;
    if (!picture.IsOk() || !picture.ConvertToImage().SaveFile(png, wxBITMAP_TYPE_PNG))
        return;
    auto const* const bytes = static_cast<guchar const*>(png.GetOutputStreamBuffer()->GetBufferStart());
    dbusmenu_menuitem_property_set_byte_array(item, DBUSMENU_MENUITEM_PROP_ICON_DATA, bytes, png.GetSize());
}

struct Choice {
    wxEvtHandler& target;
    int id;
};

// Queued, because it may open a dialog and end the menu.
void chosen(DbusmenuMenuitem*, guint, gpointer data) {
    auto const& [target, id] = *static_cast<Choice const*>(data);
    target.QueueEvent(new wxCommandEvent(wxEVT_MENU, id));
}

DbusmenuMenuitem* newEntry(wxMenuItem const& entry, wxEvtHandler& target) {
    DbusmenuMenuitem* const item = dbusmenu_menuitem_new();
    if (entry.IsSeparator()) {
        dbusmenu_menuitem_property_set(item, DBUSMENU_MENUITEM_PROP_TYPE, DBUSMENU_CLIENT_TYPES_SEPARATOR);
        return item;
    }
    dbusmenu_menuitem_property_set(item, DBUSMENU_MENUITEM_PROP_LABEL, labelOnBus(entry).utf8_str());
    setPicture(item, entry.GetBitmap());
    g_signal_connect_data(
        item, DBUSMENU_MENUITEM_SIGNAL_ITEM_ACTIVATED, G_CALLBACK(chosen), new Choice{target, entry.GetId()},
        [](gpointer choice, GClosure*) { delete static_cast<Choice*>(choice); }, GConnectFlags{});
    return item;
}

} // namespace

class MenuOnBus::Native {
public:
    Native(std::string const& path, wxMenu const& menu, wxEvtHandler& target)
        : m_server(dbusmenu_server_new(path.c_str())), m_root(dbusmenu_menuitem_new()) {
        for (wxMenuItem const* const entry : menu.GetMenuItems()) {
            GObjectPointer<DbusmenuMenuitem> const item(newEntry(*entry, target));
            dbusmenu_menuitem_child_append(m_root.get(), item.get());
        }
        dbusmenu_server_set_root(m_server.get(), m_root.get());
    }

private:
    GObjectPointer<DbusmenuServer> m_server;
    GObjectPointer<DbusmenuMenuitem> m_root;
};

MenuOnBus::MenuOnBus(std::string const& path, wxMenu const& menu, wxEvtHandler& target)
    : m_native(std::make_unique<Native>(path, menu, target)) {}

MenuOnBus::~MenuOnBus() = default;

} // namespace quillon
