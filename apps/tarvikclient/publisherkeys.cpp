#include "tarvikclient/publisherkeys.h"

#include "base/base64.h"
#include "openssl/evp_digest_wrapper.h"
#include "openssl/rsa_wrapper.h"
#include "tarvikclient/policy.h"

#include <algorithm>

namespace quillon {

String keyFingerprint(char const* pem) {
    String const text(pem);
    unsigned const begin = text.find('\n');
    unsigned const end = text.find("-----END", begin);
    tls::EVPDigest digest("sha256");
    digest.update(Base64::decode(text.range(begin, end - begin)));
    return digest.final().toHex();
}

PublisherKeys::PublisherKeys(Policy const& policy, std::vector<char const*> const& pems) {
    for (char const* const pem : pems) {
        if (!policy.acceptsKey(keyFingerprint(pem)))
            continue;
        auto key = std::make_unique<tls::RSA>();
        if (key->loadFromMem(pem, "", true))
            m_keys.push_back(std::move(key));
    }
}

PublisherKeys::~PublisherKeys() = default;

bool PublisherKeys::verify(Memory const& data, Memory const& signature) {
    return std::any_of(m_keys.begin(), m_keys.end(),
                       [&](auto const& key) { return key->verify(data, signature); });
}

bool PublisherKeys::verifySha256(Memory const& data, Memory const& signature) {
    return std::any_of(m_keys.begin(), m_keys.end(),
                       [&](auto const& key) { return key->verifySha256(data, signature); });
}

} // namespace quillon
