// What the desktop offers for a status icon, and the icon that lives on the session bus.
#pragma once

#include <functional>
#include <memory>

class wxTaskBarIcon;

namespace quillon {

class TarvikSystrayIcon;

/// Whether the icon counts as a status item, whose menu has to offer the way to stop. A dock icon, which
/// brings that entry itself, does not. Interface thread only.
bool isStatusItem(wxTaskBarIcon& icon);

/// Makes the tray's left click reach OnLeftUp() where it is reported as another event. Interface thread only.
void bindTrayClick(TarvikSystrayIcon& icon);

/// Whether the desktop has a tray at this moment. Asks the display, which takes one short round trip.
/// Interface thread only.
bool isTrayAvailable();

/// Milliseconds after which isTrayAvailable() is worth asking again; 0 where the answer never changes.
int trayPollPeriod();

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

/// The icon as a StatusNotifierItem, with the menu of a TarvikSystrayIcon. Shown from construction on.
/// Interface thread only.
class StatusItem {
public:
    /// `icon` builds the menu, gets its events, and must outlive the item.
    explicit StatusItem(TarvikSystrayIcon& icon);
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
