// A module's signature file.
#pragma once

#include "base/contentsigner.h"
#include "tarvikclient/dllinfos.h"
#include "tarvikclient/modulemanifest.h"

#include <optional>

namespace quillon {

namespace tls {
class RSA;
}

/// A module or its signature file does not verify.
class EBadSignature : public Exception {
    using Exception::Exception;
};

/// The publisher's record of one module and the signatures over it. The file is an XML document whose root
/// "dll" holds the record's keys and "signature": the RSA signature (PKCS#1 v1.5, SHA-1) in Base64 over the
/// four strings, one after the other. A record may have a "manifest", and then has "signature2" too: the same
/// over SHA-256 of what ModuleManifest::signedBytes() gives, which leaves no doubt where a string ends.
/// Readers that know neither key verify the rest. One thread at a time.
class SignedDll : public DllInfos {
public:
    /// No signature file is larger, in bytes: room for a key of 16384 bits and 256 companions with names of
    /// 100 bytes. Reading a document costs many times its size.
    static constexpr unsigned maxFileSize = 64 * 1024;

    SignedDll() : m_signer(*this) {}
    SignedDll(SignedDll const&) = delete;
    SignedDll& operator=(SignedDll const&) = delete;

    /// SHA-256 of a file, in Base64. Throws EFile, after a log line, when it cannot be read.
    static String hashFile(String const& path);

    /// Whether the module is the one of the record and the record, with its manifest if it has one, is signed
    /// by `key`; logs what is wrong. Throws EFile when the module cannot be read.
    bool verify(IVerify& key, String const& modulePath) const;
    /// The same of a module whose SHA-256, in Base64, is known.
    bool verifyHash(IVerify& key, String const& moduleSha256) const;
    /// Fills sha256, signdate and signature; version and name have been set. Throws EFile.
    void compute(ISign& signer, String const& modulePath);
    /// Gives the record a manifest and fills signature2, after compute(); signature2 is empty when the key
    /// cannot sign. Throws EModuleManifest.
    void attach(ModuleManifest const& content, tls::RSA& key);

    /// Throws EBadSignature when the file is missing or is no signature file.
    void loadFromFile(String const& path);
    /// Throws the EBadSignature of a file that cannot be opened, after its log line.
    [[noreturn]] static void failOpening(String const& path);
    /// Throws EBadSignature when the text is no signature file's. Nothing is verified yet.
    void loadFromText(String const& xml);
    /// False when the file could not be written whole.
    bool saveToFile(String const& path) const;

    using DllInfos::read;
    using DllInfos::write;
    void write(IKeyReader& reader) override;
    void read(IKeyWriter& writer) const override;

    String signature;
    std::optional<ModuleManifest> manifest;
    String signature2; ///< empty without a manifest

private:
    void writeManifest(IKeyReader& reader);

    ContentSigner m_signer;
};

} // namespace quillon
