// Which of the desktop's ways shows the status icon.
#pragma once

#include <functional>
#include <optional>

namespace quillon {

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

} // namespace quillon
