#include "gui/statuswatcher.h"

#include "gui/windowtest.h"

#include <gio/gio.h>

#include <algorithm>
#include <csignal>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace quillon::test {

namespace {

struct UnrefVariant {
    void operator()(GVariant* value) const { g_variant_unref(value); }
};
using Variant = std::unique_ptr<GVariant, UnrefVariant>;

constexpr char watcherInterface[] = R"(<node><interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
</interface></node>)";

constexpr char notificationInterface[] = R"(<node><interface name="org.freedesktop.Notifications">
  <method name="Notify">
    <arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="as" direction="in"/>
    <arg type="a{sv}" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="out"/>
  </method>
</interface></node>)";

void check(bool ok, GError* error) {
    if (ok)
        return;
    std::string const text = error ? error->message : "no answer";
    g_clear_error(&error);
    throw std::runtime_error(text);
}

/// A service with one object and one name, on a connection of its own.
class Service {
public:
    Service(SessionBus const& bus, char const* name, char const* path, char const* description,
            GDBusInterfaceVTable const& operations, gpointer self) {
        GError* error = nullptr;
        m_bus = g_dbus_connection_new_for_address_sync(
            bus.address().c_str(),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, &error);
        check(m_bus != nullptr, error);
        GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(description, nullptr);
        g_dbus_connection_register_object(m_bus, path, node->interfaces[0], &operations, self, nullptr,
                                          nullptr);
        g_dbus_node_info_unref(node);
        m_name = g_bus_own_name_on_connection(m_bus, name, {}, nullptr, nullptr, nullptr, nullptr);
    }
    ~Service() {
        g_bus_unown_name(m_name);
        g_dbus_connection_close_sync(m_bus, nullptr, nullptr);
        g_object_unref(m_bus);
    }
    Service(Service const&) = delete;
    Service& operator=(Service const&) = delete;

    GDBusConnection* bus() const { return m_bus; }

private:
    GDBusConnection* m_bus = nullptr;
    guint m_name = 0;
};

GVariant* watcherProperty(GDBusConnection*, char const*, char const*, char const*, char const* name, GError**,
                          gpointer) {
    std::string_view const property = name;
    return property == "ProtocolVersion"                  ? g_variant_new_int32(0)
           : property == "IsStatusNotifierHostRegistered" ? g_variant_new_boolean(true)
                                                          : g_variant_new_strv(nullptr, 0);
}

/// A label as it is read: "_A__b" marks A, and says "A_b".
std::string withoutMnemonic(std::string_view label) {
    std::string text;
    for (std::size_t i = 0; i < label.size(); ++i)
        if (label[i] != '_' || ++i < label.size())
            text += label[i];
    return text;
}

/// A daemon must not outlive a test that is killed.
void endWithParent(gpointer) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

} // namespace

SessionBus::SessionBus() {
    std::string const config = m_directory.path() + "/bus.conf";
    writeFile(String(config.c_str()),
              "<busconfig><type>session</type><listen>unix:dir=" + m_directory.path() +
                  "</listen><policy context='default'><allow send_destination='*' eavesdrop='true'/><allow "
                  "eavesdrop='true'/>"
                  "<allow own='*'/></policy></busconfig>");
    std::string const option = "--config-file=" + config;
    char const* const arguments[] = {"dbus-daemon", option.c_str(), "--nofork", "--print-address=1", nullptr};
    int output = -1;
    GError* error = nullptr;
    check(g_spawn_async_with_pipes(nullptr, const_cast<char**>(arguments), nullptr,
                                   static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD),
                                   endWithParent, nullptr, &m_process, nullptr, &output, nullptr, &error),
          error);
    for (char c; read(output, &c, 1) == 1 && c != '\n';)
        m_address += c;
    close(output);
    setenv("DBUS_SESSION_BUS_ADDRESS", m_address.c_str(), 1);
}

SessionBus::~SessionBus() {
    end();
}

void SessionBus::end() {
    if (m_process == 0)
        return;
    kill(m_process, SIGKILL);
    waitpid(std::exchange(m_process, 0), nullptr, 0);
}

void SessionBus::freeze(bool frozen) {
    kill(m_process, frozen ? SIGSTOP : SIGCONT);
    if (frozen)
        waitpid(m_process, nullptr, WUNTRACED);
}

class StatusWatcher::Host {
public:
    explicit Host(SessionBus const& bus)
        : m_service(bus, "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher", watcherInterface,
                    operations, this) {}

    bool hasItem() const { return !m_path.empty(); }

    std::string property(char const* name) {
        Variant const answer = call(m_path, "org.freedesktop.DBus.Properties", "Get",
                                    g_variant_new("(ss)", "org.kde.StatusNotifierItem", name));
        GVariant* value = nullptr;
        g_variant_get(answer.get(), "(v)", &value);
        Variant const owned(value);
        return g_variant_get_string(value, nullptr);
    }

    /// Number and label of each entry.
    std::vector<std::pair<int, std::string>> entries() {
        Variant const answer = callMenu("GetLayout", g_variant_new("(iias)", 0, -1, nullptr));
        Variant const children(
            g_variant_get_child_value(Variant(g_variant_get_child_value(answer.get(), 1)).get(), 2));
        std::vector<std::pair<int, std::string>> found;
        for (gsize i = 0; i < g_variant_n_children(children.get()); ++i) {
            Variant const boxed(g_variant_get_child_value(children.get(), i));
            Variant const child(g_variant_get_variant(boxed.get()));
            Variant const id(g_variant_get_child_value(child.get(), 0));
            Variant const properties(g_variant_get_child_value(child.get(), 1));
            char const* label = "-";
            g_variant_lookup(properties.get(), "label", "&s", &label);
            found.emplace_back(g_variant_get_int32(id.get()), withoutMnemonic(label));
        }
        return found;
    }

    void click(int entry) {
        callMenu("AboutToShow", g_variant_new("(i)", 0));
        callMenu("Event", g_variant_new("(isvu)", entry, "clicked", g_variant_new_int32(0), 0));
    }

private:
    static void called(GDBusConnection*, char const* sender, char const*, char const*, char const*,
                       GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self) {
        auto* const host = static_cast<Host*>(self);
        char const* path = nullptr;
        g_variant_get(parameters, "(&s)", &path);
        host->m_sender = sender;
        host->m_path = path;
        g_dbus_method_invocation_return_value(invocation, nullptr);
    }

    Variant callMenu(char const* method, GVariant* parameters) {
        return call(property("Menu"), "com.canonical.dbusmenu", method, parameters);
    }

    /// The item answers from this very thread, so its answer cannot be waited for without running events.
    Variant call(std::string const& path, char const* interface, char const* method, GVariant* parameters) {
        GAsyncResult* result = nullptr;
        auto const done = [](GObject*, GAsyncResult* answer, gpointer place) {
            *static_cast<GAsyncResult**>(place) = G_ASYNC_RESULT(g_object_ref(answer));
        };
        g_dbus_connection_call(m_service.bus(), m_sender.c_str(), path.c_str(), interface, method, parameters,
                               nullptr, {}, 5000, nullptr, done, &result);
        eventually([&] { return result != nullptr; });
        GError* error = nullptr;
        Variant answer(g_dbus_connection_call_finish(m_service.bus(), result, &error));
        g_object_unref(result);
        check(answer != nullptr, error);
        return answer;
    }

    static constexpr GDBusInterfaceVTable operations = {called, watcherProperty, nullptr, {}};
    Service m_service;
    std::string m_sender;
    std::string m_path;
};

StatusWatcher::StatusWatcher(SessionBus const& bus) : m_host(std::make_unique<Host>(bus)) {}

StatusWatcher::~StatusWatcher() = default;

bool StatusWatcher::hasItem() const {
    return m_host->hasItem();
}

std::string StatusWatcher::property(std::string const& name) {
    return m_host->property(name.c_str());
}

std::vector<std::string> StatusWatcher::labels() {
    std::vector<std::string> found;
    for (auto const& [id, label] : m_host->entries())
        found.push_back(label);
    return found;
}

void StatusWatcher::click(std::string const& label) {
    auto const entries = m_host->entries();
    auto const entry = std::ranges::find(entries, label, &std::pair<int, std::string>::second);
    if (entry == entries.end())
        throw std::runtime_error("no entry " + label);
    m_host->click(entry->first);
}

class NotificationService::Daemon {
public:
    explicit Daemon(SessionBus const& bus)
        : m_service(bus, "org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                    notificationInterface, operations, this) {}

    std::vector<Message> messages;

private:
    static void called(GDBusConnection*, char const*, char const*, char const*, char const*,
                       GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self) {
        auto& messages = static_cast<Daemon*>(self)->messages;
        guint32 replaces = 0;
        char const* title = nullptr;
        char const* text = nullptr;
        g_variant_get_child(parameters, 1, "u", &replaces);
        g_variant_get_child(parameters, 3, "&s", &title);
        g_variant_get_child(parameters, 4, "&s", &text);
        messages.push_back({replaces, title, text});
        g_dbus_method_invocation_return_value(invocation,
                                              g_variant_new("(u)", static_cast<guint32>(messages.size())));
    }

    static constexpr GDBusInterfaceVTable operations = {called, nullptr, nullptr, {}};
    Service m_service;
};

NotificationService::NotificationService(SessionBus const& bus) : m_daemon(std::make_unique<Daemon>(bus)) {}

NotificationService::~NotificationService() = default;

std::vector<NotificationService::Message> const& NotificationService::messages() const {
    return m_daemon->messages;
}

} // namespace quillon::test
