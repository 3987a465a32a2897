// ZIP archives made in memory.
#pragma once

#include <string>
#include <vector>

namespace devgateway {

struct ArchiveEntry {
    std::string name;
    std::string content;
};

/// A ZIP archive of regular files, in the order given. The same entries make the same bytes, so that a client
/// that has the archive already finds its digest unchanged after the gateway was restarted.
/// Throws std::runtime_error.
std::string zipArchive(std::vector<ArchiveEntry> const& entries);

/// The MD5 digest in lower-case hexadecimal. Throws std::runtime_error.
std::string md5Hex(std::string const& content);

} // namespace devgateway
