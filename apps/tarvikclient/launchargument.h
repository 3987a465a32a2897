// The launch URL on the command line.
#pragma once

#include "base/string.h"

namespace quillon {

/// Copies an argument of main() and overwrites it with NULs: the URL carries the user's ticket, and for as
/// long as a process lives every user of the machine can read its arguments. The main thread, before others
/// run.
String takeArgument(char* argument);

} // namespace quillon
