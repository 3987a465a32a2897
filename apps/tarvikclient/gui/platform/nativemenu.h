// Menus, which are the system's own.
#pragma once

class wxMenu;

namespace quillon {

/// Closes a menu that has been popped up, as if nothing had been chosen from it, for which wxWidgets has no
/// operation. Interface thread only.
void endNativeMenu(wxMenu& menu);

/// Has menus show their entries' pictures, which some desktops leave out unless told. Interface thread only.
void showMenuPictures();

} // namespace quillon
