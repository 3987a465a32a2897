// The request log on stderr.
#pragma once

#include <string_view>

namespace devgateway {

/// Writes one line, whole, whatever the other threads write. Controls in the text are made harmless.
void logLine(std::string_view line);

} // namespace devgateway
