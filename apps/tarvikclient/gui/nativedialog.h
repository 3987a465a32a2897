// Dialogs and menus that are the system's own.
#pragma once

class wxDialog;
class wxMenu;

namespace quillon {

/// Ends a message box that is being shown, as if it had been cancelled. wxWidgets does not count it as modal
/// and cannot end it. Interface thread only.
void endNativeDialog(wxDialog& dialog);

/// Closes a menu that has been popped up, as if nothing had been chosen from it, for which wxWidgets has no
/// operation. Interface thread only.
void endNativeMenu(wxMenu& menu);

} // namespace quillon
