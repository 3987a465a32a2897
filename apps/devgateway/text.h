// Small helpers for text.
#pragma once

#include <string>
#include <string_view>

namespace devgateway {

/// The text with every "%XX" decoded. A "%" without two hexadecimal digits stays; so does a "+".
std::string percentDecoded(std::string_view text);

/// The text with every byte that a terminal could take for a command (controls) replaced by "?".
std::string printable(std::string_view text);

/// The whole file, byte for byte. Throws std::runtime_error that names the file when it cannot be read.
std::string readFile(std::string const& path);

/// Replaces the file's content. Throws std::runtime_error that names the file when it cannot be written.
void writeFile(std::string const& path, std::string_view content);

} // namespace devgateway
