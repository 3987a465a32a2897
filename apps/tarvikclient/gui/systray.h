// The menu of the status icon, and the icon where the desktop has a tray.
#pragma once

#include <wx/taskbar.h>

namespace quillon {

class MenuCommands;

/// Builds the menu and carries out what is chosen from it, wherever it is shown; puts itself into the system
/// tray only once SetIcon() is called. Interface thread only.
class TarvikSystrayIcon : public wxTaskBarIcon {
public:
    /// `commands` must outlive the icon; without them what is chosen does nothing.
    explicit TarvikSystrayIcon(wxTaskBarIconType type, MenuCommands* commands = nullptr);

    /// A new menu, owned by the caller, with this object as its event handler.
    wxMenu* CreatePopupMenu() override;
    /// Returns when the menu has been closed; false where another one is open.
    bool PopupMenu(wxMenu* menu) override;

    void OnMenuStop(wxCommandEvent& event);
    void OnMenuLogs(wxCommandEvent& event);
    void OnMenuConf(wxCommandEvent& event);
    void OnAbout(wxCommandEvent& event);
    void OnLeftUp(wxTaskBarIconEvent& event);

private:
    MenuCommands* m_commands;

    wxDECLARE_EVENT_TABLE();
};

} // namespace quillon
