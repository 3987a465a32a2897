// What the layouts of the program's windows have in common.
#pragma once

#include <wx/scrolwin.h>

class wxDialog;
class wxTopLevelWindow;

namespace quillon {

/// Distances in the pixels of the screen that a window is on.
struct Distances {
    explicit Distances(wxWindow const& window);

    int margin; ///< between a window's edge and what is in it
    int gap;    ///< between controls
};

/// Puts a window into the middle of its parent, or of the screen where there is no parent to be seen: the
/// main frame is none. Interface thread only.
void centre(wxTopLevelWindow& window);

/// Puts the catalogue's words on a message box's buttons, in place of the system's; does nothing to any other
/// dialog. Interface thread only.
void useOwnLabels(wxDialog& dialog);

/// A number of characters and of lines in pixels, as far as the window's screen has room for them. Interface
/// thread only.
wxSize inCharacters(wxWindow const& window, wxSize const& size);

/// Holds what of a window may be larger than the screen; what has to be in sight, its buttons, stands beside
/// it. Interface thread only.
class ScrolledContents : public wxScrolledWindow {
public:
    explicit ScrolledContents(wxWindow* parent);

    /// Makes the window as large as its contents are now, at least `least` and at most the screen's work
    /// area, beyond which they are scrolled. With `keepLarger` a window that is larger stays so.
    void fitWindow(wxSize const& least = wxDefaultSize, bool keepLarger = false);

private:
    void setArea(wxSize const& area);
};

} // namespace quillon
