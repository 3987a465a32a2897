// Reads the entries of a ZIP archive one after the other.
#pragma once

#include "base/string.h"

#include <memory>

struct archive;

namespace quillon::zlib {

/// What an archive says of one entry.
struct ZipEntry {
    enum Kind { file, directory, link, other };

    /// With "/" between components, also where the archive has "\"; empty when it cannot be read.
    String name;
    Kind kind = other;
    bool encrypted = false;
    /// In bytes; negative when the archive does not say.
    long long size = -1;
};

/// One pass over an archive, from its central directory. Use it within a Utf8Locale. One thread at a time.
class ZipReader {
public:
    enum Step { entry, end, failed };

    explicit ZipReader(String const& path);
    ~ZipReader();

    /// Moves to the next entry.
    Step next(ZipEntry& found);
    /// Reads on in the entry's content: the number of bytes, 0 at its end, negative on failure.
    long read(char* buffer, std::size_t size);
    /// Why the last step failed.
    String error() const;

private:
    struct Free {
        void operator()(archive* reader) const;
    };

    std::unique_ptr<archive, Free> m_reader;
    bool m_open;
};

} // namespace quillon::zlib
