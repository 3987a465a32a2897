// The desktop's proxy.
#pragma once

#include "curl/proxysource.h"

#include <atomic>
#include <chrono>

namespace quillon {

/// The user's choice to go through the proxy that the desktop's settings name, and that proxy. The choice is
/// in a file of its own in the data directory, whose one line is "yes" or "no"; without it, and for anything
/// else that stands there, it is no. Any thread, but for load().
class SystemProxy final : public IProxySource {
public:
    /// Reads the choice; before other threads.
    void load(String const& directory);
    bool isUsed() const noexcept { return m_used; }
    /// Makes the choice, for this process.
    void use(bool used) noexcept { m_used = used; }
    /// Writes it, where it is not what stands in the file. Throws EFile, after a log line.
    void save();

    /// Asks the desktop, unless it is not to be asked: for ten seconds at most, which a script that computes
    /// the answer may take, and longer not.
    String proxyFor(String const& url, std::function<bool()> const& isCancelled) override;

private:
    String m_path;
    std::atomic<bool> m_used{false};
    std::atomic<bool> m_saved{false};
};

namespace native {

/// The proxies that the desktop names for a URL, as URLs, the best one first; "direct://" is none. Nothing
/// where the system has no such settings, or does not answer within `patience`. Ends soon after `isCancelled`
/// has said yes. Any thread.
Strings systemProxies(String const& url, std::function<bool()> const& isCancelled,
                      std::chrono::milliseconds patience);

} // namespace native

} // namespace quillon
