// Signature files: what loads is the same record when it is written and loaded again, and the bytes that the
// second signature signs give every field back, so no other record has them.
#include "base/stringconversion.h"
#include "base/stringwriter.h"
#include "fuzz/fuzzer.h"
#include "tarvikclient/signeddll.h"
#include "xml/writerkeywriter.h"

using namespace quillon;
using fuzz::require;

namespace {

/// The texts of the netstrings that `bytes` consists of.
std::vector<String> netstringsOf(String const& bytes) {
    std::vector<String> texts;
    for (unsigned at = 0; at < bytes.length();) {
        unsigned const colon = bytes.find(':', at);
        require(colon != String::npos);
        String const length = bytes.range(at, colon - at);
        texts.push_back(bytes.range(colon + 1, toUint32(length)));
        require(length == toString(texts.back().length()));
        at = colon + 1 + texts.back().length() + 1;
        require(at <= bytes.length() && bytes[at - 1] == ',');
    }
    return texts;
}

std::vector<String> fieldsOf(SignedDll const& record) {
    ModuleManifest const& manifest = *record.manifest;
    std::vector<String> fields{record.version,
                               record.name,
                               record.signdate,
                               record.sha256,
                               manifest.kind,
                               manifest.platform,
                               toString(static_cast<unsigned>(manifest.companions.size()))};
    for (ModuleCompanion const& companion : manifest.companions)
        fields.insert(fields.end(), {companion.name, companion.sha256});
    return fields;
}

String written(SignedDll const& record) {
    String text;
    StringWriter output(text);
    xml::WriterKeyWriter writer(output);
    writer["dll"].write(record);
    writer.clear();
    return text;
}

} // namespace

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    SignedDll record;
    try {
        record.loadFromText(fuzz::inputOf(data, size));
    } catch (EBadSignature const&) {
        return 0;
    }
    if (record.manifest)
        require(netstringsOf(record.manifest->signedBytes(record)) == fieldsOf(record));
    for (String* const text :
         {&record.version, &record.name, &record.signdate, &record.sha256, &record.signature})
        if (text->findFirstOf("<&", 0) != String::npos)
            text->clear(); // the writer takes plain text alone
    SignedDll again;
    if (String const text = written(record); text.length() <= 64 * 1024)
        again.loadFromText(text);
    else
        return 0;
    require(written(again) == written(record));
    require(again.manifest.has_value() == record.manifest.has_value());
    if (record.manifest)
        require(fieldsOf(again) == fieldsOf(record));
    return 0;
}
