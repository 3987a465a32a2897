#include "tarvikclient/gui/platform/statusitem.h"

#include "base/log.h"
#include "tarvikclient/gobjectpointer_linux.h"
#include "tarvikclient/gui/platform/menuonbus_linux.h"

#include <gio/gio.h>
#include <wx/filename.h>
#include <wx/menu.h>
#include <wx/stdpaths.h>

#include <string_view>
#include <utility>

namespace quillon {

namespace {

constexpr char itemPath[] = "/org/tarvik/StatusItem";
constexpr char menuPath[] = "/org/tarvik/StatusItem/Menu";
constexpr char itemInterface[] = "org.kde.StatusNotifierItem";

// As the freedesktop.org draft has it, with Ayatana's descriptions. There is no Activate: hosts then open the
// menu.
constexpr char description[] = R"xml(<node><interface name="org.kde.StatusNotifierItem">
  <property name="Id" type="s" access="read"/>
  <property name="Category" type="s" access="read"/>
  <property name="Title" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="IconName" type="s" access="read"/>
  <property name="IconAccessibleDesc" type="s" access="read"/>
  <property name="AttentionIconName" type="s" access="read"/>
  <property name="AttentionAccessibleDesc" type="s" access="read"/>
  <property name="IconThemePath" type="s" access="read"/>
  <property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
  <property name="ItemIsMenu" type="b" access="read"/>
  <property name="Menu" type="o" access="read"/>
  <signal name="NewIcon"/>
  <signal name="NewAttentionIcon"/>
  <signal name="NewToolTip"/>
  <signal name="NewStatus"><arg name="status" type="s"/></signal>
</interface></node>)xml";

GDBusInterfaceInfo* interfaceInfo() {
    static GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(description, nullptr);
    return node->interfaces[0];
}

/// The folder that holds "hicolor". Hosts look at the path's text: its last component has to be "icons", so
/// it is given without "..".
wxString iconThemePath() {
    wxFileName path = wxFileName::DirName(wxStandardPaths::Get().GetResourcesDir());
    path.RemoveLastDir();
    path.AppendDir("icons");
    return path.GetPath();
}

} // namespace

class StatusItem::Native {
public:
    Native(wxMenu const& menu, wxEvtHandler& target, StatusLook const& look)
        : m_look(look), m_iconThemePath(iconThemePath()), m_menu(menuPath, menu, target) {
        g_bus_get(G_BUS_TYPE_SESSION, m_cancellable.get(), connected, this);
    }
    ~Native() {
        g_cancellable_cancel(m_cancellable.get());
        if (m_registration)
            g_dbus_connection_unregister_object(m_bus.get(), m_registration);
    }
    Native(Native const&) = delete;
    Native& operator=(Native const&) = delete;

    void setLook(StatusLook const& look) {
        if (std::exchange(m_look, look) == look)
            return;
        emit("NewIcon");
        emit("NewAttentionIcon");
        emit("NewToolTip");
        emitStatus();
    }
    void hide() {
        m_hidden = true;
        emitStatus();
    }

private:
    static void connected(GObject*, GAsyncResult* result, gpointer self) {
        GError* error = nullptr;
        GDBusConnection* const bus = g_bus_get_finish(result, &error);
        if (bus)
            static_cast<Native*>(self)->putOn(bus);
        else
            failed("connected", error, self);
    }
    /// `self` may be gone: then the operation has been cancelled.
    static void failed(char const* method, GError* error, gpointer self) {
        if (self && !g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
            log(ERROR, "StatusItem", method, String::copyOf(error->message));
        g_error_free(error);
    }

    void putOn(GDBusConnection* bus) {
        m_bus.reset(bus);
        static constexpr GDBusInterfaceVTable operations = {nullptr, property, nullptr, {}};
        GError* error = nullptr;
        m_registration = g_dbus_connection_register_object(bus, itemPath, interfaceInfo(), &operations, this,
                                                           nullptr, &error);
        if (m_registration == 0)
            return failed("putOn", error, this);
        g_dbus_connection_call(bus, "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                               "org.kde.StatusNotifierWatcher", "RegisterStatusNotifierItem",
                               g_variant_new("(s)", itemPath), nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1,
                               m_cancellable.get(), registered, this);
    }
    static void registered(GObject* bus, GAsyncResult* result, gpointer self) {
        GError* error = nullptr;
        GVariant* const answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &error);
        if (answer)
            g_variant_unref(answer);
        else
            failed("registered", error, self);
    }

    static GVariant* property(GDBusConnection*, char const*, char const*, char const*, char const* name,
                              GError**, gpointer self) {
        return static_cast<Native const*>(self)->valueOf(name);
    }
    GVariant* valueOf(std::string_view name) const {
        auto const text = [](wxString const& value) { return g_variant_new_string(value.utf8_str()); };
        if (name == "Status")
            return g_variant_new_string(status());
        if (name == "IconName" || name == "AttentionIconName")
            return text(m_look.icon);
        if (name == "IconAccessibleDesc" || name == "AttentionAccessibleDesc")
            return text(m_look.description);
        if (name == "ToolTip")
            return g_variant_new("(s@a(iiay)ss)", "",
                                 g_variant_new_array(G_VARIANT_TYPE("(iiay)"), nullptr, 0), title,
                                 m_look.description.utf8_str().data());
        if (name == "IconThemePath")
            return text(m_iconThemePath);
        if (name == "Menu")
            return g_variant_new_object_path(menuPath);
        if (name == "ItemIsMenu")
            return g_variant_new_boolean(TRUE);
        return g_variant_new_string(name == "Id"      ? "tarvikclient"
                                    : name == "Title" ? title
                                                      : "ApplicationStatus");
    }

    char const* status() const {
        return m_hidden ? "Passive" : m_look.attention ? "NeedsAttention" : "Active";
    }
    void emitStatus() { emit("NewStatus", g_variant_new("(s)", status())); }
    void emit(char const* signal, GVariant* parameters = nullptr) {
        if (m_registration)
            g_dbus_connection_emit_signal(m_bus.get(), nullptr, itemPath, itemInterface, signal, parameters,
                                          nullptr);
        else if (parameters)
            g_variant_unref(g_variant_ref_sink(parameters));
    }

    static constexpr char title[] = "Tarvik Client";

    StatusLook m_look;
    wxString const m_iconThemePath;
    bool m_hidden = false;
    MenuOnBus m_menu;
    GObjectPointer<GCancellable> m_cancellable{g_cancellable_new()};
    GObjectPointer<GDBusConnection> m_bus;
    guint m_registration = 0;
};

StatusItem::StatusItem(wxMenu const& menu, wxEvtHandler& target, StatusLook const& look)
    : m_native(std::make_unique<Native>(menu, target, look)) {}

StatusItem::~StatusItem() {
    // The bus connection outlives the item, so the host learns nothing of its end.
    hide();
}

void StatusItem::setLook(StatusLook const& look) {
    m_native->setLook(look);
}

void StatusItem::hide() {
    m_native->hide();
}

} // namespace quillon
