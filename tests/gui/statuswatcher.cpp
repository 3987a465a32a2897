#include "gui/statuswatcher.h"

#include "gui/windowtest.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <future>
#include <stdexcept>
#include <utility>

namespace quillon::test {

namespace {

constexpr char watcherInterface[] = R"(<node><interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
</interface></node>)";

/// Null when nobody is there.
std::unique_ptr<GDBusConnection, Unref> connect() {
    auto const flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                         G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    return std::unique_ptr<GDBusConnection, Unref>(g_dbus_connection_new_for_address_sync(
        getenv("DBUS_SESSION_BUS_ADDRESS"), flags, nullptr, nullptr, nullptr));
}

/// Null when there is no answer within five seconds.
Variant callAndWait(GDBusConnection* bus, std::string const& name, std::string const& path,
                    char const* interface, char const* method, GVariant* parameters) {
    return Variant(g_dbus_connection_call_sync(bus, name.c_str(), path.c_str(), interface, method, parameters,
                                               nullptr, {}, 5000, nullptr, nullptr));
}

} // namespace

SessionBus::SessionBus() {
    String const config = m_directory.file("bus.conf");
    std::string const address = "unix:path=" + m_directory.path() + "/bus";
    writeFile(config, "<busconfig><type>session</type><listen>" + address +
                          "</listen><policy context='default'><allow send_destination='*' eavesdrop='true'/>"
                          "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>");
    setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    m_process = fork();
    if (m_process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL); // a daemon must not outlive a test that is killed
        execlp("dbus-daemon", "dbus-daemon", "--nofork", "--config-file", config.str(), nullptr);
        _exit(127);
    }
    if (!eventually([] { return connect() != nullptr; }))
        throw std::runtime_error("no session bus");
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

Service::Service(char const* name, char const* path, char const* description, Handler handler)
    : m_handler(std::move(handler)), m_bus(connect()) {
    static constexpr GDBusInterfaceVTable operations = {
        [](GDBusConnection*, char const* sender, char const*, char const*, char const*, GVariant* parameters,
           GDBusMethodInvocation* invocation, gpointer self) {
            GVariant* const answer = static_cast<Service*>(self)->m_handler(sender, parameters);
            g_dbus_method_invocation_return_value(invocation, answer);
        },
        nullptr,
        nullptr,
        {}};
    GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(description, nullptr);
    m_object = g_dbus_connection_register_object(m_bus.get(), path, node->interfaces[0], &operations, this,
                                                 nullptr, nullptr);
    g_dbus_node_info_unref(node);
    m_name = g_bus_own_name_on_connection(m_bus.get(), name, {}, nullptr, nullptr, nullptr, nullptr);
}

Service::~Service() {
    g_dbus_connection_unregister_object(m_bus.get(), m_object); // also for the calls that are on their way
    g_bus_unown_name(m_name);
    g_dbus_connection_close_sync(m_bus.get(), nullptr, nullptr);
}

StatusWatcher::StatusWatcher()
    : m_service("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher", watcherInterface,
                [this](char const* sender, GVariant* parameters) -> GVariant* {
                    char const* path = nullptr;
                    g_variant_get(parameters, "(&s)", &path);
                    m_sender = sender;
                    m_path = path;
                    return nullptr;
                }) {}

std::string StatusWatcher::property(char const* name) {
    Variant const answer = call(m_path, "org.freedesktop.DBus.Properties", "Get",
                                g_variant_new("(ss)", "org.kde.StatusNotifierItem", name));
    GVariant* value = nullptr;
    g_variant_get(answer.get(), "(v)", &value);
    Variant const owned(value);
    if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING) ||
        g_variant_is_of_type(value, G_VARIANT_TYPE_OBJECT_PATH))
        return g_variant_get_string(value, nullptr);
    return std::unique_ptr<char, decltype(&g_free)>(g_variant_print(value, FALSE), g_free).get();
}

void StatusWatcher::click(std::string const& label) {
    Variant const layout = callMenu("GetLayout", g_variant_new("(iias)", 0, -1, nullptr));
    GVariantIter* entries = nullptr;
    g_variant_get(layout.get(), "(u(ia{sv}av))", nullptr, nullptr, nullptr, &entries);
    std::unique_ptr<GVariantIter, decltype(&g_variant_iter_free)> const owned(entries, g_variant_iter_free);
    while (Variant const boxed{g_variant_iter_next_value(entries)}) {
        Variant const entry(g_variant_get_variant(boxed.get()));
        Variant const properties(g_variant_get_child_value(entry.get(), 1));
        int id = 0;
        char const* found = "";
        g_variant_get_child(entry.get(), 0, "i", &id);
        g_variant_lookup(properties.get(), "label", "&s", &found);
        if (found != label)
            continue;
        callMenu("AboutToShow", g_variant_new("(i)", 0));
        callMenu("Event", g_variant_new("(isvu)", id, "clicked", g_variant_new_int32(0), 0));
        return;
    }
    throw std::runtime_error("no entry " + label);
}

Variant StatusWatcher::callMenu(char const* method, GVariant* parameters) {
    return call(property("Menu"), "com.canonical.dbusmenu", method, parameters);
}

Variant StatusWatcher::call(std::string const& path, char const* interface, char const* method,
                            GVariant* parameters) {
    // The item answers from the interface's thread, whose events have to go on meanwhile.
    auto answer = std::async(std::launch::async, callAndWait, m_service.bus(), m_sender, path, interface,
                             method, parameters);
    eventually([&] { return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready; });
    if (Variant result = answer.get())
        return result;
    throw std::runtime_error(std::string("no answer to ") + method);
}

} // namespace quillon::test
