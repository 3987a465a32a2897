// What the window system does with a window of the program's.
#pragma once

class wxDialog;
class wxTopLevelWindow;

namespace quillon {

// Interface thread only.

/// The window never takes the keyboard from another one by being shown.
void keepFocusElsewhere(wxTopLevelWindow& window);
/// Whether the desktop's task bar lists the window.
void listInTaskBar(wxTopLevelWindow& window, bool listed);
/// Lets the user move the window with the mouse button that is down. False where the system cannot.
bool moveWithMouse(wxTopLevelWindow& window);
/// A modal dialog locks up the program's other modal dialogs, but neither its tray icon nor its panel, from
/// which the way out has to be open always. Called before the dialog is shown.
void lockUpDialogsOnly(wxDialog& dialog);

} // namespace quillon
