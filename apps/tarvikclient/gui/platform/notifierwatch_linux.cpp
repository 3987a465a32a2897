#include "tarvikclient/gui/platform/notifierwatch.h"

#include <gio/gio.h>

#include <optional>
#include <utility>

namespace quillon {

namespace {

constexpr char watcherName[] = "org.kde.StatusNotifierWatcher";

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

} // namespace quillon
