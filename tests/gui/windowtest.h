// A wxWidgets application for tests that need windows, and what such tests have in common.
#pragma once

#include <wx/dialog.h>
#include <wx/modalhook.h>

#include <functional>
#include <vector>

namespace quillon {

/// Runs the application's events until the condition holds; false after `seconds`.
bool eventually(std::function<bool()> const& condition, double seconds = 10);

/// Calls `act` once a modal dialog is open and has been drawn, from within that dialog's own event loop. Of
/// several the last one made counts.
void whenModal(std::function<void(wxDialog&)> act);

/// The modal dialog that is open, or null. Of several the last one made.
wxDialog* openModalDialog();

/// Presses the button of that id, or of that label, in a window, and nothing if there is none.
void press(wxWindow& window, int id);
void press(wxWindow& window, char const* label);

/// Moves the mouse to the middle of a window, which must be visible, and clicks.
void clickOn(wxWindow& window, int mouseButton);

/// Installs the program's own pictures, which a tray icon needs.
void usePictures();

/// Answers message boxes in the user's place, from Register() on, and counts the other modal dialogs.
class MessageBoxes final : public wxModalDialogHook {
public:
    int answer = wxID_OK; ///< wxID_NONE to have them shown
    std::vector<wxString> texts;
    int otherDialogs = 0;

private:
    int Enter(wxDialog* dialog) override;
};

} // namespace quillon
