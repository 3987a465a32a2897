// The platform's own log.
#pragma once

#include "base/log.h"

namespace quillon::native {

/// Sends one line to the system log: NSLog on macOS, syslog with the user facility elsewhere. `text` is never
/// taken as a format.
void systemLog(LogCategory category, char const* text) noexcept;

} // namespace quillon::native
