// The display that the windows are on.
#pragma once

#include <functional>

namespace quillon {

/// Whether a window stays where the program puts it. A Wayland desktop places windows itself. Interface
/// thread only.
bool windowsCanBePlaced();

/// `onLost` is called when the connection to the display breaks, which ends the process as soon as it
/// returns. It may be called within any operation on a window, and must use none. Not every desktop tells.
/// Interface thread only.
void watchDisplay(std::function<void()> onLost);

} // namespace quillon
