#include "ziparchive.h"

#include "support/temporarydirectory.h"

#include <archive.h>
#include <archive_entry.h>

#include <stdexcept>

namespace quillon::test {

namespace {

void require(int result, archive* writer) {
    if (result != ARCHIVE_OK)
        throw std::runtime_error(std::string("cannot write archive: ") + archive_error_string(writer));
}

void writeItem(archive* writer, ZipItem const& item) {
    archive_entry* const entry = archive_entry_new();
    archive_entry_copy_pathname(entry, item.name.c_str());
    bool const isDirectory = item.name.back() == '/';
    archive_entry_set_filetype(entry, isDirectory ? AE_IFDIR : item.linkTarget.empty() ? AE_IFREG : AE_IFLNK);
    if (!item.linkTarget.empty())
        archive_entry_copy_symlink(entry, item.linkTarget.c_str());
    archive_entry_set_perm(entry, 0644);
    archive_entry_set_size(entry, static_cast<la_int64_t>(item.content.size()));
    require(archive_write_header(writer, entry), writer);
    archive_entry_free(entry);
    if (!item.content.empty() && archive_write_data(writer, item.content.data(), item.content.size()) < 0)
        require(ARCHIVE_FAILED, writer);
}

void put(std::string& bytes, std::size_t at, unsigned value, unsigned width) {
    for (unsigned i = 0; i < width; ++i)
        bytes.at(at + i) = static_cast<char>(value >> (8 * i));
}

void putAll(std::string& bytes, std::string const& mark, std::size_t offset, unsigned value, unsigned width) {
    for (std::size_t at = 0; (at = bytes.find(mark, at)) != std::string::npos; at += mark.size())
        put(bytes, at + offset, value, width);
}

} // namespace

void writeZip(String const& path, std::vector<ZipItem> const& items, char const* password) {
    archive* const writer = archive_write_new();
    require(archive_write_set_format_zip(writer), writer);
    if (password) {
        require(archive_write_set_options(writer, "zip:encryption=traditional"), writer);
        require(archive_write_set_passphrase(writer, password), writer);
    }
    require(archive_write_open_filename(writer, path.str()), writer);
    for (ZipItem const& item : items)
        writeItem(writer, item);
    require(archive_write_close(writer), writer);
    archive_write_free(writer);
}

void forge(String const& path, ZipField field, unsigned value) {
    static std::string const local("PK\3\4"), central("PK\1\2");
    std::string bytes = readFile(path);
    switch (field) {
    case ZipField::flags:
        putAll(bytes, local, 6, value, 2);
        putAll(bytes, central, 8, value, 2);
        break;
    case ZipField::size:
        putAll(bytes, local, 22, value, 4);
        putAll(bytes, central, 24, value, 4);
        break;
    case ZipField::attributes:
        putAll(bytes, central, 38, value, 4);
        break;
    }
    writeFile(path, bytes);
}

void forge(String const& path, std::string const& from, std::string const& to) {
    std::string bytes = readFile(path);
    for (std::size_t at = 0; (at = bytes.find(from, at)) != std::string::npos; at += to.size())
        bytes.replace(at, from.size(), to);
    writeFile(path, bytes);
}

} // namespace quillon::test
