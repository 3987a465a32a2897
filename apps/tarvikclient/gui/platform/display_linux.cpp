#include "tarvikclient/gui/platform/display.h"

#include "base/log.h"

#include <gdk/gdkwayland.h>
#include <gdk/gdkx.h>

#include <utility>

namespace quillon {

namespace {

std::function<void()> g_onDisplayLost;
XIOErrorHandler g_toolkitsHandler = nullptr;

int onDisplayError(Display* display) {
    log(ERROR, "Desktop", "onDisplayError", "the connection to the display is lost");
    if (auto const onLost = std::exchange(g_onDisplayLost, nullptr))
        onLost();
    return g_toolkitsHandler(display); // ends the process
}

} // namespace

bool windowsCanBePlaced() {
    return !GDK_IS_WAYLAND_DISPLAY(gdk_display_get_default());
}

// On Wayland the toolkit ends the process without asking.
void watchDisplay(std::function<void()> onLost) {
    if (!GDK_IS_X11_DISPLAY(gdk_display_get_default()))
        return;
    g_onDisplayLost = std::move(onLost);
    g_toolkitsHandler = XSetIOErrorHandler(onDisplayError);
}

} // namespace quillon
