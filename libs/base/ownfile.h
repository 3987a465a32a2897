// Files that nobody else has had a hand in.
#pragma once

#include "base/descriptor.h"

#include <string_view>

namespace quillon {

/// Opens `name`, relative to `directory` (a descriptor, or AT_FDCWD), with open()'s `flags` and, where they
/// create it, `mode`; never waits and follows no link in the last component. None, with errno set, unless it
/// is (EPERM) a plain file of the process's user with this one name. Any thread.
Descriptor openOwnFile(int directory, char const* name, int flags, unsigned mode = 0);

/// Writes all bytes; false, with errno set, when the system does not take them. Any thread.
bool writeAll(Descriptor const& file, std::string_view bytes);

} // namespace quillon
