// Where proxies come from that the application does not name itself.
#pragma once

#include "base/strings.h"

#include <functional>

namespace quillon {

/// Knows which proxy leads to a host.
class IProxySource {
public:
    virtual ~IProxySource() = default;

    /// The proxy for requests to `url`, as a URL: "http://proxy:3128", "socks5://proxy", or another scheme
    /// that libcurl knows. Empty, or "direct://": none. Called on the thread that makes the request, which it
    /// may hold up for as long as `isCancelled` says no, within bounds of its own.
    virtual String proxyFor(String const& url, std::function<bool()> const& isCancelled) = 0;
};

} // namespace quillon
