// What a log may hold of a URI.
#pragma once

#include "base/string.h"

namespace quillon::http {

/// The URI, of whatever form, with "..." in place of what may be secret: its user info, which is a launch
/// URL's ticket, and the values of its query's parameters.
///
///     loggableUri("tarvik://ticket@gate.example/a?lang=fr"); // "tarvik://...@gate.example/a?lang=..."
String loggableUri(String const& uri);

} // namespace quillon::http
