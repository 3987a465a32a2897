// The status icon that lives on the session bus.
#pragma once

#include <functional>
#include <memory>

class wxEvtHandler;
class wxMenu;

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

/// The icon as a StatusNotifierItem with a menu of its own. Shown from construction on. Interface thread
/// only.
class StatusItem {
public:
    using MenuMaker = std::function<std::unique_ptr<wxMenu>()>;

    /// `makeMenu` is called whenever the item is put on the bus; what is chosen from its menu is queued for
    /// `target` as wxEVT_MENU. `target` must outlive the item.
    StatusItem(MenuMaker makeMenu, wxEvtHandler& target);
    ~StatusItem();
    StatusItem(StatusItem const&) = delete;
    StatusItem& operator=(StatusItem const&) = delete;

    /// Makes the desktop hide the icon. The item stays on the bus for those that ask about it later.
    void hide();

private:
    class Native;
    std::unique_ptr<Native> m_native;
};

} // namespace quillon
