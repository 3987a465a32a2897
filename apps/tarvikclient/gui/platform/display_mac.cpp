#include "tarvikclient/gui/platform/display.h"

namespace quillon {

bool windowsCanBePlaced() {
    return true;
}

// The windows are the process's own here.
void watchDisplay(std::function<void()>) {}

} // namespace quillon
