// What differs from desktop to desktop.
#pragma once

#include <wx/string.h>

namespace quillon {

/// Whether a window stays where the program puts it. A Wayland desktop places windows itself. Interface
/// thread only.
bool windowsCanBePlaced();

/// Shows a notification of the desktop's own, in place of the last one shown this way. Waits for nothing;
/// where the desktop has no notifications, or they do not answer, nothing is shown. Interface thread only.
void showDesktopNotification(wxString const& title, wxString const& text);

/// Has menus show their entries' pictures, which some desktops leave out unless told. Interface thread only.
void showMenuPictures();

} // namespace quillon
