// The header names that the system knows.
#pragma once

#include "base/string.h"

#include <span>

namespace quillon::http {

/// A header's canonical name and the key by which names are matched.
struct KnownHeader {
    String name;
    String key;
};

/// All of them, in a fixed order. The key is the name in lower case, but that of "X-Forwarded-Proto" keeps
/// its capital: "x-forwarded-Proto". Made at the first call; any thread.
std::span<KnownHeader const> knownHeaders();

/// The entry whose key is `name`, as it stands or in lower case; null when there is none. Lives as long as
/// the process. Any thread.
KnownHeader const* findKnownHeader(String const& name);

} // namespace quillon::http
