// Makes ZIP archives for tests, honest and hostile ones.
#pragma once

#include "base/string.h"

#include <string>
#include <vector>

namespace quillon::test {

/// What is written as one entry. A name that ends in "/" makes a directory, a link target a symbolic link.
struct ZipItem {
    std::string name;
    std::string content;
    std::string linkTarget = {};
};

/// Writes an archive with libarchive; a password encrypts its files.
void writeZip(String const& path, std::vector<ZipItem> const& items, char const* password = nullptr);

/// Which field of an archive's headers forge() overwrites.
enum class ZipField {
    flags,      ///< 16 bits, in both headers
    size,       ///< 32 bits, the size of the content, in both headers
    attributes, ///< 32 bits, the system's file mode above the DOS attributes, in the central directory
};

/// Sets a field of each entry to `value`.
void forge(String const& path, ZipField field, unsigned value);
/// Replaces each occurrence of `from` by `to`, of the same length.
void forge(String const& path, std::string const& from, std::string const& to);

} // namespace quillon::test
