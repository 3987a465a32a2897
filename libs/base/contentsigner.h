// Signs and verifies what a record says.
#pragma once

#include "base/serialize.h"
#include "base/sign.h"

namespace quillon {

/// Signs the text that a record writes positionally: its strings one after the other, with nothing between.
/// The record must outlive the signer and is read at each call.
class ContentSigner {
public:
    explicit ContentSigner(ISerialize const& content) : m_content(content) {}

    /// The signature in Base64.
    String computeSignature(ISign& signer) const;
    /// Whether `signatureBase64` is the key's signature over the record as it is now.
    bool verifySignature(IVerify& key, String const& signatureBase64) const;

private:
    Memory serialised() const;

    ISerialize const& m_content;
};

} // namespace quillon
