#include "tarvikclient/gui/platform/display.h"

#include "base/log.h"

#include <gdk/gdkwayland.h>
#include <gdk/gdkx.h>

#include <string_view>
#include <utility>

namespace quillon {

namespace {

std::function<void()> g_onDisplayLost;
XIOErrorHandler g_toolkitsHandler = nullptr;

void loseDisplay() {
    log(ERROR, "Desktop", "onDisplayError", "the connection to the display is lost");
    if (auto const onLost = std::exchange(g_onDisplayLost, nullptr))
        onLost();
}

int onDisplayError(Display* display) {
    loseDisplay();
    return g_toolkitsHandler(display); // ends the process
}

/// On Wayland the toolkit ends the process without asking; all that comes before is one of these sentences.
bool isLastWord(std::string_view text) {
    return text.starts_with("Lost connection to Wayland") || text.starts_with("Error flushing display") ||
           text.starts_with("Error reading events from display") ||
           text.find("dispatching to Wayland display") != text.npos;
}

std::string_view textOf(GLogField const& field) {
    auto const* const text = static_cast<char const*>(field.value);
    return field.length < 0 ? std::string_view(text)
                            : std::string_view(text, static_cast<gsize>(field.length));
}

GLogWriterOutput onToolkitsMessage(GLogLevelFlags level, GLogField const* fields, gsize count, gpointer) {
    GLogWriterOutput const written = g_log_writer_default(level, fields, count, nullptr);
    for (gsize i = 0; i < count; ++i)
        if (std::string_view(fields[i].key) == "MESSAGE" && isLastWord(textOf(fields[i])))
            loseDisplay();
    return written;
}

} // namespace

bool windowsCanBePlaced() {
    return !GDK_IS_WAYLAND_DISPLAY(gdk_display_get_default());
}

void watchDisplay(std::function<void()> onLost) {
    g_onDisplayLost = std::move(onLost);
    if (GDK_IS_X11_DISPLAY(gdk_display_get_default()))
        g_toolkitsHandler = XSetIOErrorHandler(onDisplayError);
    else
        g_log_set_writer_func(&onToolkitsMessage, nullptr, nullptr);
}

} // namespace quillon
