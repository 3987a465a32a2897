// The status icon that lives on the session bus.
#pragma once

#include <wx/string.h>

#include <memory>

class wxEvtHandler;
class wxMenu;

namespace quillon {

/// What the icon shows.
struct StatusLook {
    wxString icon;          ///< by its name in the icon theme
    wxString description;   ///< of the icon, for who does not see it, and of the program's state when it is
                            ///< pointed at
    bool attention = false; ///< whether the user should look

    bool operator==(StatusLook const&) const = default;
};

/// The icon as a StatusNotifierItem, with a menu of its own. Shown from construction on. Waits for nothing.
/// Interface thread only.
class StatusItem {
public:
    /// `menu` is copied; what is chosen from it is queued for `target`, which must outlive the item, as
    /// wxEVT_MENU.
    StatusItem(wxMenu const& menu, wxEvtHandler& target, StatusLook const& look);
    ~StatusItem();
    StatusItem(StatusItem const&) = delete;
    StatusItem& operator=(StatusItem const&) = delete;

    void setLook(StatusLook const& look);
    /// Makes the desktop hide the icon. The item stays on the bus for those that ask about it later.
    void hide();

private:
    class Native;
    std::unique_ptr<Native> m_native;
};

} // namespace quillon
