#include "zlib/zipreader.h"

#include <archive.h>
#include <archive_entry.h>

namespace quillon::zlib {

namespace {

constexpr std::size_t blockSize = 65536;

ZipEntry::Kind kindOf(archive_entry* entry) {
    if (archive_entry_hardlink(entry) || archive_entry_symlink(entry))
        return ZipEntry::link;
    switch (archive_entry_filetype(entry)) {
    case AE_IFREG:
        return ZipEntry::file;
    case AE_IFDIR:
        return ZipEntry::directory;
    case AE_IFLNK:
        return ZipEntry::link;
    default:
        return ZipEntry::other;
    }
}

} // namespace

void ZipReader::Free::operator()(archive* reader) const {
    archive_read_free(reader);
}

// The reader that takes entries as they come is left out: what an entry is stands only in the central
// directory.
ZipReader::ZipReader(String const& path)
    : m_reader(archive_read_new()),
      m_open(m_reader && archive_read_support_format_zip_seekable(m_reader.get()) == ARCHIVE_OK &&
             archive_read_open_filename(m_reader.get(), path.str(), blockSize) == ARCHIVE_OK) {}

ZipReader::~ZipReader() = default;

ZipReader::Step ZipReader::next(ZipEntry& found) {
    if (!m_open)
        return failed;
    archive_entry* raw = nullptr;
    int const result = archive_read_next_header(m_reader.get(), &raw);
    if (result == ARCHIVE_EOF)
        return end;
    if (result != ARCHIVE_OK && result != ARCHIVE_WARN)
        return failed;
    char const* const name = archive_entry_pathname(raw);
    found.name = name ? String(name).replace('\\', '/').clone() : String();
    found.kind = kindOf(raw);
    found.encrypted = archive_entry_is_encrypted(raw);
    found.size = archive_entry_size_is_set(raw) ? archive_entry_size(raw) : -1;
    return Step::entry;
}

long ZipReader::read(char* buffer, std::size_t size) {
    la_ssize_t count;
    do
        count = archive_read_data(m_reader.get(), buffer, size);
    while (count == ARCHIVE_RETRY);
    return static_cast<long>(count);
}

String ZipReader::error() const {
    char const* const text = m_reader ? archive_error_string(m_reader.get()) : nullptr;
    return text ? String(text).clone() : String("unknown error");
}

} // namespace quillon::zlib
