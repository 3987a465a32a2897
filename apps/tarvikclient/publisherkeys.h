// The keys against which modules are verified.
#pragma once

#include "base/sign.h"

#include <memory>
#include <vector>

namespace quillon {

class Policy;

namespace tls {
class RSA;
}

/// The publisher's RSA public keys that the program was built with, in PEM (SubjectPublicKeyInfo); at least
/// one. C strings that live as long as the program.
std::vector<char const*> publisherKeyPems();

/// SHA-256 of a PEM text's key, the DER of its SubjectPublicKeyInfo, in lower-case hexadecimal. For keys that
/// are known to be well-formed.
String keyFingerprint(char const* pem);

/// Those of the publisher's keys that a policy does not refuse, as one: what any of them verifies is the
/// publisher's. One thread at a time.
class PublisherKeys final : public IVerify {
public:
    explicit PublisherKeys(Policy const& policy, std::vector<char const*> const& pems = publisherKeyPems());
    ~PublisherKeys() override;

    /// False also when every key is refused.
    bool verify(Memory const& data, Memory const& signature) override;
    bool verifySha256(Memory const& data, Memory const& signature) override;

private:
    std::vector<std::unique_ptr<tls::RSA>> m_keys;
};

} // namespace quillon
