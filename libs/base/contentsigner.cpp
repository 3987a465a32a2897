#include "base/contentsigner.h"

#include "base/base64.h"
#include "base/stringwriter.h"

namespace quillon {

Memory ContentSigner::serialised() const {
    String text;
    StringWriter writer(text);
    m_content.read(static_cast<IWriter&>(writer));
    return Memory(text);
}

String ContentSigner::computeSignature(ISign& signer) const {
    return Base64::encode(signer.sign(serialised()));
}

bool ContentSigner::verifySignature(IVerify& key, String const& signatureBase64) const {
    return key.verify(serialised(), Base64::decode(signatureBase64));
}

} // namespace quillon
