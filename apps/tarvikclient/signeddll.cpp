#include "tarvikclient/signeddll.h"

#include "base/base64.h"
#include "base/file.h"
#include "base/log.h"
#include "openssl/evp_digest_wrapper.h"
#include "xml/parserreader.h"
#include "xml/xmlparser.h"

namespace quillon {

namespace {

constexpr char rootName[] = "dll";
// Several times what a record with a key of 16384 bits needs; reading a document costs many times its size.
constexpr unsigned long maxFileSize = 64 * 1024;

[[noreturn]] void failParsing() {
    log(ERROR, "SignedDll", "loadFromFile", "Error while parsing signature");
    throw EBadSignature("EBadSignature", "apps/tarvikclient/signeddll.cpp", 80);
}

} // namespace

String SignedDll::hashFile(String const& path) {
    File file;
    if (!file.open(path, File::in)) {
        log(ERROR, "SignedDll", "hashFile", "Cannot open " + path);
        throw EFile("EFile", "apps/tarvikclient/signeddll.cpp", __LINE__);
    }
    tls::EVPDigest digest("sha256");
    return Base64::encode(digest.computehash(file));
}

bool SignedDll::verify(IVerify& key, String const& modulePath) const {
    if (hashFile(modulePath) != sha256) {
        log(ERROR, "FileSignature", "verify", "bad hash ");
        return false;
    }
    if (!m_signer.verifySignature(key, signature)) {
        log(ERROR, "FileSignature", "verify", "bad signature");
        return false;
    }
    return true;
}

void SignedDll::compute(ISign& signer, String const& modulePath) {
    sha256 = hashFile(modulePath);
    signdate = DateTime().toString();
    signature = m_signer.computeSignature(signer);
}

void SignedDll::loadFromFile(String const& path) {
    if (File::getFileSize(path) > maxFileSize)
        failParsing();
    try {
        xml::ParserReader document(path);
        write(document[rootName]);
    } catch (EFile const&) {
        log(ERROR, "SignedDll", "loadFromFile", "Cannot open dll signature " + path);
        throw EBadSignature("EBadSignature", "apps/tarvikclient/signeddll.cpp", 77);
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
}

void SignedDll::read(IKeyWriter& writer) const {
    DllInfos::read(writer);
    writer["signature"].write(signature);
}

} // namespace quillon
