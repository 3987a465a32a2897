// Where the client's log is.
#pragma once

#include "base/string.h"

namespace quillon {

/// Sends all lines to a file, which is truncated. Returns why that cannot be; all lines go to the system log
/// alone then. Empty when done. Before other threads log.
String logTo(String const& path);

/// Where that is in the data directory.
String logInDataDirectory(String const& directory);

/// Sends all lines to logInDataDirectory(), where nobody else can put anything in its way, and says so there
/// and on standard error. The log was to be at `refused`; `reason` is what logTo() said. Makes the directory;
/// throws EFile, after a log line, when it cannot.
void logToDataDirectory(String const& directory, String const& refused, String const& reason);

} // namespace quillon
