// Whether the desktop takes status icons over the session bus.
#pragma once

#include <functional>
#include <memory>

namespace quillon {

/// Follows whether the session bus has a watcher, which takes StatusNotifierItems to the desktop's hosts.
/// Whether it has a host is not asked. Interface thread only.
class NotifierWatch {
public:
    /// Called with the first answer and with each that differs from the one before; never once the watch has
    /// gone. Without a session bus the answer is false.
    using Listener = std::function<void(bool present)>;

    /// Returns at once, however slow the bus is.
    explicit NotifierWatch(Listener listener);
    ~NotifierWatch();
    NotifierWatch(NotifierWatch const&) = delete;
    NotifierWatch& operator=(NotifierWatch const&) = delete;

private:
    class Subscription;
    std::unique_ptr<Subscription> m_subscription;
};

} // namespace quillon
