// Extraction of the archives in which modules are delivered.
#pragma once

#include "base/string.h"

namespace quillon::zlib {

/// Static functions only; any thread. They throw nothing but std::bad_alloc.
class Zip {
public:
    Zip() = delete;

    /// Extracts a ZIP archive below `destination`, a directory that is made when it is missing. Files get
    /// mode 0777, directories 0700; a file or link that stands where a file goes is removed first. True when
    /// everything was extracted.
    ///
    /// An archive comes from the network. One is refused, with one ERROR line and before anything is written,
    /// when it holds a name that is absolute, leaves the destination or cannot be read, anything that is
    /// neither a file nor a directory, an encrypted entry, or more than Limits allows. What it says about
    /// sizes may be a lie: they are counted again while it is written. When that or reading or writing fails,
    /// what has been extracted stays.
    static bool unzip(String const& archive, String const& destination);

    /// Extracts "directory/name.zip" into "directory" and returns "directory/name", the package's one file;
    /// null, after a TRACE line, when it is not there afterwards.
    static String DecompressPackage(String const& archive);
};

} // namespace quillon::zlib
