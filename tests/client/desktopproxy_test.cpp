// The desktop's proxy by way of GIO, whose resolver is the test's here.
#include "tarvikclient/systemproxy.h"

#include <gio/gio.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <atomic>

namespace quillon::test {

namespace {

std::atomic<bool> g_hangs{false};

struct Resolver {
    GObject parent;
};
struct ResolverClass {
    GObjectClass parent;
};

gchar** lookUp(GProxyResolver*, gchar const* uri, GCancellable* cancellable, GError** error) {
    if (std::string_view(uri) == "https://fails.example/") {
        g_set_error_literal(error, G_IO_ERROR, G_IO_ERROR_FAILED, "no such script");
        return nullptr;
    }
    while (g_hangs && !g_cancellable_is_cancelled(cancellable))
        g_usleep(1000);
    gchar const* const proxies[] = {"http://proxy.example:3128", "direct://", nullptr};
    return g_strdupv(const_cast<gchar**>(proxies));
}

void makeInterface(void* table, void*) {
    auto* const interface = static_cast<GProxyResolverInterface*>(table);
    interface->is_supported = [](GProxyResolver*) -> gboolean { return TRUE; };
    interface->lookup = &lookUp;
}

GType resolverType() {
    static GType const type = [] {
        GTypeInfo info{};
        info.class_size = sizeof(ResolverClass);
        info.instance_size = sizeof(Resolver);
        GType const made = g_type_register_static(G_TYPE_OBJECT, "TestResolver", &info, GTypeFlags(0));
        GInterfaceInfo const interface { &makeInterface, nullptr, nullptr };
        g_type_add_interface_static(made, G_TYPE_PROXY_RESOLVER, &interface);
        return made;
    }();
    return type;
}

bool never() {
    return false;
}

TEST(DesktopProxy, is_what_gio_names_and_is_not_waited_for_beyond_a_bound) {
    setenv("GIO_USE_PROXY_RESOLVER", "test", 1);
    g_io_extension_point_register(G_PROXY_RESOLVER_EXTENSION_POINT_NAME);
    g_io_extension_point_implement(G_PROXY_RESOLVER_EXTENSION_POINT_NAME, resolverType(), "test", 1000);
    using std::chrono::milliseconds;
    Strings const named = native::systemProxies("https://gate.example/", never, milliseconds(10000));
    ASSERT_EQ(named.size(), 2u);
    EXPECT_EQ(named[0], "http://proxy.example:3128");
    EXPECT_TRUE(native::systemProxies("https://fails.example/", never, milliseconds(10000)).empty());

    g_hangs = true;
    auto const begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(native::systemProxies("https://gate.example/", never, milliseconds(300)).empty());
    EXPECT_TRUE(native::systemProxies(
                    "https://gate.example/", [] { return true; }, milliseconds(60000))
                    .empty());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

} // namespace

} // namespace quillon::test
