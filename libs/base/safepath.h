// Names from the network that become paths.
#pragma once

#include "base/string.h"

namespace quillon {

/// Whether `name`, appended to a directory and "/", stays inside that directory: not absolute, no component
/// "..", no NUL. Backslashes count as slashes, because file operations turn them into slashes. An empty name
/// is safe: it names the directory itself. Links on the disk are not looked at.
bool isSafeRelativePath(String const& name) noexcept;

} // namespace quillon
