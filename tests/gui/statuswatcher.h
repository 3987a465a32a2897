// A session bus of the test's own, and on it a desktop's side of StatusNotifierItems and notifications.
#pragma once

#include "support/temporarydirectory.h"

#include <gio/gio.h>

#include <functional>
#include <memory>
#include <string>

namespace quillon::test {

/// A bus daemon that starts no services. From its construction on it is the process's session bus; there can
/// be one in a process, because GLib keeps its connection.
class SessionBus {
public:
    SessionBus();
    ~SessionBus();
    SessionBus(SessionBus const&) = delete;
    SessionBus& operator=(SessionBus const&) = delete;

    /// Stops the daemon's process without ending it, or lets it go on: a bus that hangs.
    void freeze(bool frozen);
    void end();

private:
    TemporaryDirectory m_directory;
    int m_process = 0;
};

/// Unreferences what GLib has made.
struct Unref {
    void operator()(GVariant* value) const { g_variant_unref(value); }
    void operator()(GDBusConnection* bus) const { g_object_unref(bus); }
};
using Variant = std::unique_ptr<GVariant, Unref>;

/// Owns a name on the session bus as long as it lives, through a connection of its own.
class Service {
public:
    /// Gets the sender and the parameters of each call, and returns the answer; null is an empty one.
    using Handler = std::function<GVariant*(char const* sender, GVariant* parameters)>;

    /// `description` is the interface of the one object.
    Service(char const* name, char const* path, char const* description, Handler handler);
    ~Service();
    Service(Service const&) = delete;
    Service& operator=(Service const&) = delete;

    GDBusConnection* bus() const { return m_bus.get(); }

private:
    Handler m_handler;
    std::unique_ptr<GDBusConnection, Unref> m_bus;
    guint m_object;
    guint m_name;
};

/// The watcher, which looks at the last item that was registered as a host would. The operations run the
/// application's events until the item has answered; they throw std::runtime_error when it does not.
class StatusWatcher {
public:
    StatusWatcher();

    bool hasItem() const { return !m_path.empty(); }
    /// A property of the item, as it is where it is a string, else as GVariant writes it.
    std::string property(char const* name);
    /// Chooses a menu entry by its label, in which "_" marks a letter, as a host does when it is clicked.
    void click(std::string const& label);

private:
    Variant call(std::string const& path, char const* interface, char const* method, GVariant* parameters);
    Variant callMenu(char const* method, GVariant* parameters);

    Service m_service;
    std::string m_sender;
    std::string m_path;
};

} // namespace quillon::test
