// What the layouts of the program's windows have in common.
#pragma once

class wxTopLevelWindow;
class wxWindow;

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

} // namespace quillon
