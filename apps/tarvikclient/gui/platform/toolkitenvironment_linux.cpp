#include "tarvikclient/gui/platform/toolkitenvironment.h"

#include <cstdlib>

namespace quillon {

namespace {

bool g_glSettingIsOurs = false;

} // namespace

void prepareEnvironment() {
    // GTK would probe for OpenGL, which the client does not draw with, and take twice as long to start.
    g_glSettingIsOurs = !getenv("GDK_GL") && setenv("GDK_GL", "disable", 0) == 0;
}

void restoreEnvironment() {
    if (g_glSettingIsOurs)
        unsetenv("GDK_GL");
}

} // namespace quillon
