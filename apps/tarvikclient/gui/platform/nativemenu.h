// Menus, which are the system's own.
#pragma once

class wxEvtHandler;
class wxMenu;

namespace quillon {

/// Closes a menu that has been popped up, as if nothing had been chosen from it, for which wxWidgets has no
/// operation. Interface thread only.
void endNativeMenu(wxMenu& menu);

/// From now on what is chosen from the menu is queued for `target`, which outlives it, as wxEVT_MENU: also
/// while a modal dialog is open, where wxWidgets may drop it. For a menu that is complete. Interface thread
/// only.
void listenToMenu(wxMenu& menu, wxEvtHandler& target);

/// Has menus show their entries' pictures, which some desktops leave out unless told. Interface thread only.
void showMenuPictures();

} // namespace quillon
