// Proxies of the environment.
#pragma once

#include "base/string.h"

namespace quillon {

/// Whether a variable of the environment names a proxy for the scheme "https" or "http", by the rules that
/// libcurl has for them. What no_proxy takes out is not asked: libcurl heeds that for every proxy. Any
/// thread, while nobody changes the environment.
bool environmentNamesProxy(String const& scheme);

} // namespace quillon
