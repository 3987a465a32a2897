// One extraction of a ZIP archive.
#pragma once

#include "base/file.h"
#include "zlib/zipreader.h"

#include <sys/stat.h>

#include <set>

namespace quillon::zlib {

/// What an archive may hold at most.
struct Limits {
    /// Entries, and directories that their names imply.
    unsigned entries = 4096;
    /// The sum of the files' sizes, in bytes.
    long long bytes = 512LL * 1024 * 1024;
    /// Components of a name.
    unsigned depth = 32;
};

/// Goes over an archive twice: all entries are checked before the first one is written. Each failure is
/// logged under Zip::unzip. Used once, by one thread.
class Extraction {
public:
    Extraction(String const& archive, String const& destination, Limits const& limits);

    /// True when everything was extracted. Throws nothing but std::bad_alloc.
    bool run();

private:
    /// What one pass has seen so far.
    struct Tally {
        unsigned entries = 0;
        long long bytes = 0;
        std::set<String> directories;
    };

    bool isArchiveReadable();
    bool survey();
    bool extract();
    bool isAcceptable(ZipEntry const& entry, Tally& tally) const;
    bool refuseSize() const;
    bool isArchiveItself(String const& path) const;
    bool write(ZipReader& reader, ZipEntry const& entry);
    bool writeFile(ZipReader& reader, ZipEntry const& entry);
    bool copyContent(ZipReader& reader, ZipEntry const& entry, File& file);
    bool makeDirectories(String const& directory);
    String pathOf(String const& name) const { return m_destination + "/" + name; }

    String const m_archive;
    String const m_destination;
    Limits const m_limits;
    struct stat m_archiveInfo {};
    long long m_written = 0;
    std::set<String> m_made; // directories below the destination that are there
};

} // namespace quillon::zlib
