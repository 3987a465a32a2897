#include "tarvikclient/gui/platform/statusitem.h"

#include "base/log.h"

#include <libayatana-appindicator/app-indicator.h>
#include <wx/filename.h>
#include <wx/menu.h>
#include <wx/stdpaths.h>
#include <wx/timer.h>

#include <optional>
#include <utility>

namespace quillon {

namespace {

constexpr char watcherName[] = "org.kde.StatusNotifierWatcher";

/// The library puts an icon of its own into the system tray while no watcher is there. What takes the icon's
/// place is decided elsewhere, and two icons would be one too many.
void forbidFallback(gpointer itemClass, gpointer) {
    APP_INDICATOR_CLASS(itemClass)->fallback = nullptr;
}

GType itemType() {
    static GType const type = [] {
        GTypeQuery base;
        g_type_query(APP_INDICATOR_TYPE, &base);
        return g_type_register_static_simple(APP_INDICATOR_TYPE, "TarvikStatusItem", base.class_size,
                                             forbidFallback, base.instance_size, nullptr, GTypeFlags{});
    }();
    return type;
}

/// The folder that holds "hicolor". Hosts look at the path's text: its last component has to be "icons", so
/// it is given without "..".
wxString iconThemePath() {
    wxFileName path = wxFileName::DirName(wxStandardPaths::Get().GetResourcesDir());
    path.RemoveLastDir();
    path.AppendDir("icons");
    return path.GetPath();
}

AppIndicator* newItem() {
    return APP_INDICATOR(g_object_new(itemType(), "id", "tarvikclient", "category", "ApplicationStatus",
                                      "icon-name", "tarvikclient", "icon-theme-path",
                                      iconThemePath().utf8_str().data(), "title", "Tarvik Client", nullptr));
}

} // namespace

class NotifierWatch::Subscription {
public:
    explicit Subscription(Listener listener)
        : m_listener(std::move(listener)),
          m_id(g_bus_watch_name(G_BUS_TYPE_SESSION, watcherName, G_BUS_NAME_WATCHER_FLAGS_NONE, appeared,
                                vanished, this, nullptr)) {}
    ~Subscription() { g_bus_unwatch_name(m_id); }
    Subscription(Subscription const&) = delete;
    Subscription& operator=(Subscription const&) = delete;

private:
    static void appeared(GDBusConnection* bus, char const*, char const*, gpointer self) {
        static_cast<Subscription*>(self)->tell(bus, true);
    }
    static void vanished(GDBusConnection* bus, char const*, gpointer self) {
        static_cast<Subscription*>(self)->tell(bus, false);
    }
    void tell(GDBusConnection* bus, bool present) {
        // A bus that ends would otherwise end the process, and with it the tunnel.
        if (bus)
            g_dbus_connection_set_exit_on_close(bus, false);
        if (m_present == present)
            return;
        m_present = present;
        // The listener may end the watch, and itself with it.
        Listener const listener = m_listener;
        listener(present);
    }

    Listener m_listener;
    std::optional<bool> m_present;
    guint m_id;
};

NotifierWatch::NotifierWatch(Listener listener)
    : m_subscription(std::make_unique<Subscription>(std::move(listener))) {}

NotifierWatch::~NotifierWatch() = default;

namespace {

/// One item on the bus, with a menu of its own.
class MenuOnBus {
public:
    MenuOnBus(std::unique_ptr<wxMenu> menu, wxEvtHandler& target)
        : m_menu(std::move(menu)), m_item(newItem()) {
        // wxWidgets drops what is chosen while a modal dialog is open, and the way to stop has to work then:
        // GTK is listened to instead.
        m_menu->SetEventHandler(&m_unheard);
        for (wxMenuItem const* const entry : m_menu->GetMenuItems())
            listenTo(entry->GetMenuItem(), entry->GetId(), target);
        app_indicator_set_menu(m_item, GTK_MENU(m_menu->m_menu));
        app_indicator_set_status(m_item, APP_INDICATOR_STATUS_ACTIVE);
    }
    ~MenuOnBus() {
        // Takes it off the bus even where the library has lost count of its references, because the next item
        // has the same name there. An item that is disposed of twice gives back what it holds twice: where
        // that does not come with the last reference, the object itself is left behind.
        auto* const item = G_OBJECT(m_item);
        if (g_atomic_int_get(&item->ref_count) > 1)
            g_object_run_dispose(item);
        else
            g_object_unref(item);
    }
    MenuOnBus(MenuOnBus const&) = delete;
    MenuOnBus& operator=(MenuOnBus const&) = delete;

    void hide() { app_indicator_set_status(m_item, APP_INDICATOR_STATUS_PASSIVE); }
    /// Whether the library has got as far as talking to the watcher.
    bool hasWatcher() const {
        gboolean connected = FALSE;
        g_object_get(m_item, "connected", &connected, nullptr);
        return connected;
    }

private:
    struct Choice {
        wxEvtHandler& target;
        int id;
    };

    static void listenTo(GtkWidget* entry, int id, wxEvtHandler& target) {
        g_signal_connect_data(
            entry, "activate", G_CALLBACK(chosen), new Choice{target, id},
            [](gpointer choice, GClosure*) { delete static_cast<Choice*>(choice); }, GConnectFlags{});
    }
    // It may open a dialog, and while that is open the item may go. So the choice is carried out once the
    // menu, which goes with the item, has been left.
    static void chosen(GtkWidget*, gpointer data) {
        auto const& [target, id] = *static_cast<Choice const*>(data);
        target.QueueEvent(new wxCommandEvent(wxEVT_MENU, id));
    }

    wxEvtHandler m_unheard;
    std::unique_ptr<wxMenu> m_menu;
    AppIndicator* m_item;
};

} // namespace

/// Keeps the item on the bus. The library asks for its bus connection and for the watcher at once, and where
/// the watcher's answer comes first (a busy machine is enough) it has no connection to register with and
/// never tries again. Such an item is replaced by a new one.
class StatusItem::Native {
public:
    Native(MenuMaker makeMenu, wxEvtHandler& target) : m_makeMenu(std::move(makeMenu)), m_target(target) {
        m_check.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { check(); });
        put();
    }

    void hide() {
        m_check.Stop();
        m_menu->hide();
    }

private:
    /// Milliseconds in which a watcher is found where there is one.
    static constexpr int settled = 1000;

    void put() {
        m_menu.emplace(m_makeMenu(), m_target);
        m_check.StartOnce(settled);
    }
    void check() {
        if (!m_menu->hasWatcher()) {
            log(TRACE, "StatusItem", "check", "the item found no watcher and is put on the bus again");
            put();
        }
    }

    MenuMaker m_makeMenu;
    wxEvtHandler& m_target;
    std::optional<MenuOnBus> m_menu;
    wxTimer m_check;
};

StatusItem::StatusItem(MenuMaker makeMenu, wxEvtHandler& target)
    : m_native(std::make_unique<Native>(std::move(makeMenu), target)) {}

StatusItem::~StatusItem() {
    // The bus connection outlives the item, so the host learns nothing of its end.
    hide();
}

void StatusItem::hide() {
    m_native->hide();
}

} // namespace quillon
