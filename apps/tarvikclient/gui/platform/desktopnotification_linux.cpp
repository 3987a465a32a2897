#include "tarvikclient/gui/platform/desktopnotification.h"

#include "base/log.h"
#include "tarvikclient/gobjectpointer_linux.h"

#include <gio/gio.h>

#include <memory>
#include <optional>
#include <utility>

namespace quillon {

namespace {

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
    void withdraw() {
        m_next.reset();
        // One whose number is not known yet is taken back when it is.
        m_unwanted = m_busy;
        if (m_bus && m_shown)
            g_dbus_connection_call(m_bus.get(), service, path, service, "CloseNotification",
                                   g_variant_new("(u)", m_shown), nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
                                   timeout, nullptr, nullptr, nullptr);
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
        auto& notifications = *static_cast<Notifications*>(self);
        notifications.m_bus.reset(g_bus_get_finish(result, &error));
        if (notifications.m_bus)
            notifications.send();
        else
            notifications.failed(error);
    }

    void send() {
        // A bus that ends must not end the process.
        g_dbus_connection_set_exit_on_close(m_bus.get(), false);
        if (!m_next) { // withdrawn meanwhile
            m_busy = m_unwanted = false;
            return;
        }
        Message const message = *std::exchange(m_next, std::nullopt);
        g_dbus_connection_call(m_bus.get(), service, path, service, "Notify", parameters(message),
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
        auto& notifications = *static_cast<Notifications*>(self);
        g_variant_get(answer.get(), "(u)", &notifications.m_shown);
        notifications.m_busy = false;
        if (std::exchange(notifications.m_unwanted, false))
            notifications.withdraw();
        notifications.next();
    }

    void failed(GError* error) {
        std::unique_ptr<GError, FreeError> const owned(error);
        log(DEBUG, "Notifications", "failed", String::copyOf(error->message));
        m_unwanted = false;
        next();
    }

    static constexpr int timeout = 5000;                               // milliseconds
    static constexpr char service[] = "org.freedesktop.Notifications"; // and its interface
    static constexpr char path[] = "/org/freedesktop/Notifications";

    GObjectPointer<GDBusConnection> m_bus;
    /// Only the newest message waits while one is on its way: its number is needed to replace it.
    std::optional<Message> m_next;
    bool m_busy = false;
    bool m_unwanted = false; // what is on its way has been withdrawn
    guint32 m_shown = 0;
};

/// Lives as long as the process: an answer may come at any time.
Notifications& notifications() {
    static Notifications& theirs = *new Notifications;
    return theirs;
}

} // namespace

void showDesktopNotification(wxString const& title, wxString const& text) {
    notifications().show(title, text);
}

void withdrawDesktopNotification() {
    notifications().withdraw();
}

} // namespace quillon
