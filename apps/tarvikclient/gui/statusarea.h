// Where the status icon is shown.
#pragma once

#include "tarvikclient/gui/model/sessionstate.h"
#include "tarvikclient/gui/model/statusrung.h"

#include <memory>

namespace quillon {

class TarvikSystrayIcon;

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
    /// What the icon tells from now on, wherever it is; `text` is one line.
    void tell(SessionMood mood, wxString const& text);
    /// Takes the icon away for good. The listener is not called any more, unless no rung had been taken: then
    /// it still learns of the rung `none`, because the menu has no other place there.
    void remove();

private:
    class Watch;
    std::unique_ptr<Watch> m_watch;
};

} // namespace quillon
