// A module's signature file.
#pragma once

#include "base/contentsigner.h"
#include "tarvikclient/dllinfos.h"

namespace quillon {

/// A module or its signature file does not verify.
class EBadSignature : public Exception {
    using Exception::Exception;
};

/// The publisher's record of one module and the signature over it. The file is an XML document whose root
/// "dll" holds the record's keys and "signature": the RSA signature (PKCS#1 v1.5, SHA-1) in Base64 over the
/// four strings, one after the other. One thread at a time.
class SignedDll : public DllInfos {
public:
    /// Behind a module's path: the path of its signature file.
    static constexpr char fileSuffix[] = ".sig";

    SignedDll() : m_signer(*this) {}
    SignedDll(SignedDll const&) = delete;
    SignedDll& operator=(SignedDll const&) = delete;

    /// SHA-256 of a file, in Base64. Throws EFile, after a log line, when it cannot be read.
    static String hashFile(String const& path);

    /// Whether the module is the one of the record and the record is signed by `key`; logs what is wrong.
    bool verify(IVerify& key, String const& modulePath) const;
    /// Fills sha256, signdate and signature; version and name have been set. Throws EFile.
    void compute(ISign& signer, String const& modulePath);

    /// Throws EBadSignature when the file is missing or is no signature file.
    void loadFromFile(String const& path);
    /// False when the file could not be written whole.
    bool saveToFile(String const& path) const;

    using DllInfos::read;
    using DllInfos::write;
    void write(IKeyReader& reader) override;
    void read(IKeyWriter& writer) const override;

    String signature;

private:
    ContentSigner m_signer;
};

} // namespace quillon
