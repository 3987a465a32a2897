#include "tarvikclient/systemproxy.h"

#include "base/file.h"
#include "base/log.h"
#include "base/ownfile.h"
#include "http/loggableuri.h"

#include <fcntl.h>
#include <unistd.h>

#include <string_view>

namespace quillon {

namespace {

constexpr char fileName[] = "/use-system-proxy";
constexpr std::chrono::seconds patience{10};

/// In libcurl's words; the desktop says "socks" and leaves names to the proxy.
String inLibcurlsWords(String const& proxy) {
    constexpr std::string_view socks = "socks://", socks5 = "socks5://";
    for (std::string_view const scheme : {socks, socks5})
        if (proxy.view().starts_with(scheme))
            return "socks5h://" + proxy.range(static_cast<unsigned>(scheme.length()));
    return proxy;
}

} // namespace

void SystemProxy::load(String const& directory) {
    m_path = directory.trimRight('/') + fileName;
    char text[4] = "";
    Descriptor const file = openOwnFile(AT_FDCWD, m_path.str(), O_RDONLY);
    m_used = file && read(file.number(), text, sizeof text - 1) == sizeof text - 1 &&
             std::string_view(text) == "yes";
    m_saved = m_used.load();
}

void SystemProxy::save() {
    constexpr unsigned ownerOnly = 0600;
    bool const used = m_used;
    if (used == m_saved)
        return;
    File::replaceAllFile(m_path, used ? "yes\n" : "no\n", ownerOnly);
    m_saved = used;
}

String SystemProxy::proxyFor(String const& url, std::function<bool()> const& isCancelled) {
    if (!m_used)
        return String();
    Strings const proxies = native::systemProxies(url, isCancelled, patience);
    String proxy = proxies.empty() ? String() : inLibcurlsWords(proxies[0]).owned();
    log(TRACE, "SystemProxy", "proxyFor",
        url + " -> " + (proxy.empty() ? String("none") : http::loggableUri(proxy)));
    return proxy;
}

} // namespace quillon
