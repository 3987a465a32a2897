#include "client/signedmodule.h"

#include "openssl/rsa_wrapper.h"
#include "tarvikclient/signeddll.h"

#include <archive.h>
#include <archive_entry.h>

#include <stdexcept>
#include <vector>

namespace quillon::test {

String testModule(std::string const& name) {
    return String::copyOf(std::string(TEST_MODULES "/") + name + ".so");
}

std::string signatureOf(std::string const& content) {
    static tls::RSA& key = *[] {
        auto* const loaded = new tls::RSA;
        if (!loaded->loadFromPem(TEST_PRIVATE_KEY, "", false))
            throw std::runtime_error("no private key to sign with");
        return loaded;
    }();
    TemporaryDirectory directory;
    writeFile(directory.file("module"), content);
    SignedDll record;
    record.name = "test";
    record.version = "1.0";
    record.compute(key, directory.file("module"));
    record.saveToFile(directory.file("module.sig"));
    return readFile(directory.file("module.sig"));
}

std::string zipOf(std::map<std::string, std::string> const& entries) {
    std::vector<char> buffer(1024 * 1024 * 16);
    std::size_t used = 0;
    archive* const writer = archive_write_new();
    archive_write_set_format_zip(writer);
    archive_write_open_memory(writer, buffer.data(), buffer.size(), &used);
    for (auto const& [name, content] : entries) {
        archive_entry* const entry = archive_entry_new();
        archive_entry_set_pathname(entry, name.c_str());
        archive_entry_set_filetype(entry, AE_IFREG);
        archive_entry_set_perm(entry, 0644);
        archive_entry_set_size(entry, static_cast<la_int64_t>(content.size()));
        archive_write_header(writer, entry);
        archive_write_data(writer, content.data(), content.size());
        archive_entry_free(entry);
    }
    archive_write_free(writer);
    return std::string(buffer.data(), used);
}

std::string signedArchive(std::string const& pattern, std::string const& content) {
    return zipOf({{pattern, content}, {pattern + ".sig", signatureOf(content)}});
}

} // namespace quillon::test
