#include "tarvikclient/signeddll.h"

#include "base/base64.h"
#include "base/failure.h"
#include "base/file.h"
#include "openssl/evp_digest_wrapper.h"
#include "openssl/rsa_wrapper.h"
#include "xml/parserreader.h"
#include "xml/xmlparser.h"

namespace quillon {

namespace {

constexpr char rootName[] = "dll";

[[noreturn]] void failParsing() {
    fail<EBadSignature>("SignedDll", "loadFromFile", "Error while parsing signature",
                        {"apps/tarvikclient/signeddll.cpp", 80});
}

bool refuse(char const* reason) {
    log(ERROR, "FileSignature", "verify", reason);
    return false;
}

} // namespace

String SignedDll::hashFile(String const& path) {
    File file;
    if (!file.open(path, File::in))
        fail<EFile>("SignedDll", "hashFile", "Cannot open " + path);
    tls::EVPDigest digest("sha256");
    return Base64::encode(digest.computehash(file));
}

bool SignedDll::verify(IVerify& key, String const& modulePath) const {
    return verifyHash(key, hashFile(modulePath));
}

bool SignedDll::verifyHash(IVerify& key, String const& moduleSha256) const {
    // What stands before an empty one would stand for it in the text that is signed.
    if (sha256.empty() || moduleSha256 != sha256)
        return refuse("bad hash ");
    if (!m_signer.verifySignature(key, signature))
        return refuse("bad signature");
    if (manifest && !key.verifySha256(Memory(manifest->signedBytes(*this)), Base64::decode(signature2)))
        return refuse("bad manifest signature");
    return true;
}

void SignedDll::compute(ISign& signer, String const& modulePath) {
    sha256 = hashFile(modulePath);
    signdate = DateTime().toString();
    signature = m_signer.computeSignature(signer);
}

void SignedDll::attach(ModuleManifest const& content, tls::RSA& key) {
    content.check();
    manifest = content;
    signature2 = Base64::encode(key.signSha256(Memory(content.signedBytes(*this))));
}

void SignedDll::loadFromFile(String const& path) {
    if (File::getFileSize(path) > maxFileSize)
        failParsing();
    String text;
    try {
        text = File::readAllFile(path);
    } catch (EFile const&) {
        failOpening(path);
    }
    loadFromText(text);
}

void SignedDll::failOpening(String const& path) {
    fail<EBadSignature>("SignedDll", "loadFromFile", "Cannot open dll signature " + path,
                        {"apps/tarvikclient/signeddll.cpp", 77});
}

void SignedDll::loadFromText(String const& xml) {
    if (xml.length() > maxFileSize)
        failParsing();
    try {
        write(xml::ParserReader::fromText(xml)[rootName]);
    } catch (EKeyReader const&) {
        failParsing();
    }
}

bool SignedDll::saveToFile(String const& path) const {
    return xml::Parser::write(path, rootName, *this);
}

void SignedDll::write(IKeyReader& reader) {
    DllInfos::write(reader);
    reader["signature"].read(signature);
    manifest.reset();
    signature2.clear();
    if (reader.exists("manifest") || reader.exists("signature2"))
        writeManifest(reader);
}

void SignedDll::writeManifest(IKeyReader& reader) {
    if (reader.size("manifest") != 1 || reader.size("signature2") != 1)
        failParsing();
    reader["manifest"].read(manifest.emplace());
    reader["signature2"].read(signature2);
    if (signature2.empty() || Base64::encode(Base64::decode(signature2)) != signature2)
        failParsing();
}

void SignedDll::read(IKeyWriter& writer) const {
    DllInfos::read(writer);
    writer["signature"].write(signature);
    if (!manifest)
        return;
    writer["manifest"].write(*manifest);
    writer["signature2"].write(signature2);
}

} // namespace quillon
