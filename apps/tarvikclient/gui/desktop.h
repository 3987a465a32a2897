// What differs from desktop to desktop.
#pragma once

#include <wx/string.h>

#include <functional>

namespace quillon {

/// Puts into the environment what the toolkit is to find there. Called before it starts, by the only thread.
void prepareEnvironment();
/// Takes that out again, because a module's programs inherit the environment. Called once the toolkit has
/// started and before there is a session.
void restoreEnvironment();

/// Whether a window stays where the program puts it. A Wayland desktop places windows itself. Interface
/// thread only.
bool windowsCanBePlaced();

/// Shows a notification of the desktop's own, in place of the last one shown this way. Waits for nothing;
/// where the desktop has no notifications, or they do not answer, nothing is shown. Interface thread only.
void showDesktopNotification(wxString const& title, wxString const& text);

/// `onLost` is called when the connection to the display breaks, which ends the process as soon as it
/// returns. It may be called within any operation on a window, and must use none. Not every desktop tells.
/// Interface thread only.
void watchDisplay(std::function<void()> onLost);

/// Has menus show their entries' pictures, which some desktops leave out unless told. Interface thread only.
void showMenuPictures();

} // namespace quillon
