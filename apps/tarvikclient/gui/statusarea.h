// Where the status icon is shown.
#pragma once

#include <functional>
#include <memory>
#include <optional>

namespace quillon {

class TarvikSystrayIcon;

/// The ways of showing the icon, best first.
enum class StatusRung {
    notifierItem, ///< a StatusNotifierItem on the session bus
    tray,         ///< the system tray; the menu bar on macOS
    none          ///< the desktop shows no icon: the notification panel carries the menu
};

/// Turns what is known of the desktop into a rung. No window; one thread.
class StatusRungChoice {
public:
    using Taken = std::function<void(StatusRung)>;

    /// `taken` is called with the first rung and with each that differs from the one before.
    explicit StatusRungChoice(Taken taken) : m_taken(std::move(taken)) {}

    /// Whether a watcher for StatusNotifierItems is there. Nothing is taken before this is known.
    void setWatcher(bool present);
    void setTray(bool available);
    /// Takes what there is if no word of a watcher has come yet.
    void stopWaiting();
    bool hasTaken() const { return m_rung.has_value(); }

private:
    void choose();

    Taken m_taken;
    std::optional<bool> m_watcher;
    bool m_tray = false;
    std::optional<StatusRung> m_rung;
};

/// Shows the status icon in the best way that the desktop offers, and again when that changes. Interface
/// thread only.
class StatusArea {
public:
    /// Called when the rung has been taken: first within a fifth of a second of show(), from the event loop
    /// or from show() itself, then at each change. May call remove(), but must not destroy the status area.
    using Listener = std::function<void(StatusRung)>;

    /// `icon` builds the menu and must outlive the status area.
    StatusArea(TarvikSystrayIcon& icon, Listener listener);
    ~StatusArea();
    StatusArea(StatusArea const&) = delete;
    StatusArea& operator=(StatusArea const&) = delete;

    /// Takes the best rung, logs its name, and follows the desktop from then on. Waits for nothing. Further
    /// calls do nothing.
    void show();
    /// Takes the icon away for good. The listener is not called any more, unless no rung had been taken: then
    /// it still learns of the rung `none`, because the menu has no other place there.
    void remove();

private:
    class Watch;
    std::unique_ptr<Watch> m_watch;
};

} // namespace quillon
