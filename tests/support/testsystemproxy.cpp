#include "support/testsystemproxy.h"

#include "base/mutex.h"
#include "tarvikclient/systemproxy.h"

namespace quillon {

namespace {

Mutex g_mutex;
String g_proxy;
std::vector<String> g_urls;

} // namespace

Strings native::systemProxies(String const& url, std::function<bool()> const&, std::chrono::milliseconds) {
    TSynchronize<Mutex> lock(g_mutex);
    g_urls.push_back(url.clone());
    return g_proxy.empty() ? Strings() : Strings{g_proxy, "direct://"};
}

void test::setSystemProxy(String const& proxy) {
    TSynchronize<Mutex> lock(g_mutex);
    g_proxy = proxy.clone();
    g_urls.clear();
}

std::vector<String> test::urlsOfSystemProxy() {
    TSynchronize<Mutex> lock(g_mutex);
    return g_urls;
}

} // namespace quillon
