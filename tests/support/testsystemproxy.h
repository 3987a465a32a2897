// The desktop's proxy of a test program.
#pragma once

#include "base/string.h"

#include <vector>

namespace quillon::test {

/// What the desktop names as the proxy from now on, whatever the URL; empty, as at first: nothing. One
/// thread.
void setSystemProxy(String const& proxy);
/// For which URLs it was asked since.
std::vector<String> urlsOfSystemProxy();

} // namespace quillon::test
