#include "tarvikclient/gui/platform/desktopnotification.h"

#include "base/log.h"

#include <gio/gio.h>

#include <memory>
#include <optional>
#include <utility>

namespace quillon {

namespace {

template <class T>
struct Unref {
    void operator()(T* object) const { g_object_unref(object); }
};

struct FreeError {
    void operator()(GError* error) const { g_error_free(error); }
};

struct UnrefVariant {
    void operator()(GVariant* value) const { g_variant_unref(value); }
};

/// Says the notifications to the desktop's service itself: wxWidgets' class goes through libnotify, whose
/// calls wait for the service, and a service that hangs would stop the interface for 25 seconds at a time.
class Notifications {
public:
    void show(wxString const& title, wxString const& text) {
        m_next = {title, text};
        if (!m_busy)
            next();
    }

private:
    struct Message {
        wxString title;
        wxString text;
    };

    void next() {
        m_busy = m_next.has_value();
        if (m_busy)
            g_bus_get(G_BUS_TYPE_SESSION, nullptr, connected, this);
    }

    static void connected(GObject*, GAsyncResult* result, gpointer self) {
        GError* error = nullptr;
        std::unique_ptr<GDBusConnection, Unref<GDBusConnection>> const bus(g_bus_get_finish(result, &error));
        if (bus)
            static_cast<Notifications*>(self)->send(bus.get());
        else
            static_cast<Notifications*>(self)->failed(error);
    }

    void send(GDBusConnection* bus) {
        // A bus that ends must not end the process.
        g_dbus_connection_set_exit_on_close(bus, false);
        Message const message = *std::exchange(m_next, std::nullopt);
        g_dbus_connection_call(bus, "org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                               "org.freedesktop.Notifications", "Notify", parameters(message),
                               G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, timeout, nullptr, answered,
                               this);
    }

    GVariant* parameters(Message const& message) const {
        // The text is read as markup, and it comes from outside.
        std::unique_ptr<char, decltype(&g_free)> const text(g_markup_escape_text(message.text.utf8_str(), -1),
                                                            g_free);
        return g_variant_new("(susssasa{sv}i)", "Tarvik Client", m_shown, "tarvikclient",
                             message.title.utf8_str().data(), text.get(), nullptr, nullptr, -1);
    }

    static void answered(GObject* bus, GAsyncResult* result, gpointer self) {
        GError* error = nullptr;
        std::unique_ptr<GVariant, UnrefVariant> const answer(
            g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &error));
        if (!answer)
            return static_cast<Notifications*>(self)->failed(error);
        g_variant_get(answer.get(), "(u)", &static_cast<Notifications*>(self)->m_shown);
        static_cast<Notifications*>(self)->next();
    }

    void failed(GError* error) {
        std::unique_ptr<GError, FreeError> const owned(error);
        log(DEBUG, "Notifications", "failed", String::copyOf(error->message));
        next();
    }

    static constexpr int timeout = 5000; // milliseconds
    /// Only the newest message waits while one is on its way: its number is needed to replace it.
    std::optional<Message> m_next;
    bool m_busy = false;
    guint32 m_shown = 0;
};

} // namespace

void showDesktopNotification(wxString const& title, wxString const& text) {
    // Lives as long as the process: an answer may come at any time.
    static Notifications& notifications = *new Notifications;
    notifications.show(title, text);
}

} // namespace quillon
