#include "devgateway/ziparchive.h"

#include <archive.h>
#include <archive_entry.h>
#include <openssl/evp.h>

#include <memory>
#include <stdexcept>

namespace devgateway {

namespace {

struct Free {
    void operator()(archive* writer) const { archive_write_free(writer); }
    void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};

/// Called by libarchive with a piece of the archive; "context" is the std::string that collects them.
la_ssize_t collect(archive*, void* context, void const* bytes, size_t size) noexcept {
    static_cast<std::string*>(context)->append(static_cast<char const*>(bytes), size);
    return static_cast<la_ssize_t>(size);
}

void check(archive* writer, bool ok) {
    if (!ok)
        throw std::runtime_error(std::string("cannot make a ZIP archive: ") + archive_error_string(writer));
}

void addEntry(archive* writer, ArchiveEntry const& file) {
    // No time is set: the archive depends on names and contents alone.
    std::unique_ptr<archive_entry, Free> const entry(archive_entry_new2(writer));
    archive_entry_set_pathname(entry.get(), file.name.c_str());
    archive_entry_set_size(entry.get(), static_cast<la_int64_t>(file.content.size()));
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), 0644);
    check(writer, archive_write_header(writer, entry.get()) == ARCHIVE_OK);
    la_ssize_t const written = archive_write_data(writer, file.content.data(), file.content.size());
    check(writer, written == static_cast<la_ssize_t>(file.content.size()));
}

} // namespace

std::string zipArchive(std::vector<ArchiveEntry> const& entries) {
    std::string bytes; // declared first: the writer's end may still write to it
    std::unique_ptr<archive, Free> const writer(archive_write_new());
    if (!writer)
        throw std::runtime_error("cannot make a ZIP archive: out of memory");
    check(writer.get(), archive_write_set_format_zip(writer.get()) == ARCHIVE_OK);
    check(writer.get(), archive_write_set_bytes_in_last_block(writer.get(), 1) == ARCHIVE_OK);
    check(writer.get(), archive_write_open(writer.get(), &bytes, nullptr, collect, nullptr) == ARCHIVE_OK);
    for (ArchiveEntry const& entry : entries)
        addEntry(writer.get(), entry);
    check(writer.get(), archive_write_close(writer.get()) == ARCHIVE_OK);
    return bytes;
}

std::string md5Hex(std::string const& content) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    if (!EVP_Digest(content.data(), content.size(), digest, &length, EVP_md5(), nullptr))
        throw std::runtime_error("cannot compute an MD5 digest");
    constexpr char digits[] = "0123456789abcdef";
    std::string hex;
    for (unsigned int i = 0; i < length; ++i) {
        hex += digits[digest[i] >> 4];
        hex += digits[digest[i] & 15];
    }
    return hex;
}

} // namespace devgateway
