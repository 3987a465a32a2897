// Percent-encoding of what stands in the components of a URI.
#pragma once

#include "base/string.h"

namespace quillon::http {

/// What becomes of a "%" that is followed by two hexadecimal digits.
enum class Escapes { encode, keep };

/// Percent-encodes the bytes that RFC 3986 does not allow in a path.
String encodePath(String const& path, Escapes escapes);
/// The same for a fragment, where "?" may stand too.
String encodeFragment(String const& fragment, Escapes escapes);

} // namespace quillon::http
