// What a key does.
#include "openssl/rsa_wrapper.h"

#include "base/assertion.h"
#include "openssl/errorqueue.h"

#include <openssl/objects.h>
#include <openssl/rsa.h>
#include <openssl/sha.h>

#include <array>

namespace quillon::tls {

namespace {

// What OAEP over SHA-1 adds to a text: two digests and two bytes.
constexpr unsigned oaepOverhead = 2 * SHA_DIGEST_LENGTH + 2;

std::array<unsigned char, SHA_DIGEST_LENGTH> sha1(unsigned char const* data, unsigned long length) {
    std::array<unsigned char, SHA_DIGEST_LENGTH> digest;
    SHA_CTX context;
    SHA1_Init(&context);
    SHA1_Update(&context, data, length);
    SHA1_Final(digest.data(), &context);
    return digest;
}

std::array<unsigned char, SHA256_DIGEST_LENGTH> sha256(Memory const& data) {
    std::array<unsigned char, SHA256_DIGEST_LENGTH> digest;
    SHA256(data.bytes(), data.size(), digest.data());
    return digest;
}

} // namespace

unsigned RSA::signLength() const noexcept {
    return m_handle ? static_cast<unsigned>(RSA_size(m_handle)) : 0;
}

unsigned RSA::maxPlainLength() const noexcept {
    return signLength() > oaepOverhead ? signLength() - oaepOverhead : 0;
}

int RSA::verify(unsigned char const* data, unsigned long length, unsigned char const* signature) {
    QUILLON_ASSERT(valid(), "a key is loaded");
    ErrorQueueGuard const guard;
    auto const digest = sha1(data, length);
    return RSA_verify(NID_sha1, digest.data(), digest.size(), signature, signLength(), m_handle);
}

bool RSA::verify(Memory const& data, Memory const& signature) {
    QUILLON_ASSERT(valid(), "a key is loaded");
    return signature.size() == signLength() && verify(data.bytes(), data.size(), signature.bytes()) == 1;
}

int RSA::sign(unsigned char const* data, unsigned long length, unsigned char* out) {
    QUILLON_ASSERT(valid(), "a key is loaded");
    ErrorQueueGuard const guard;
    auto const digest = sha1(data, length);
    unsigned written = 0;
    return RSA_sign(NID_sha1, digest.data(), digest.size(), out, &written, m_handle);
}

Memory RSA::sign(Memory const& data) {
    Memory signature;
    signature.resize(signLength());
    if (sign(data.bytes(), data.size(), signature.bytes()) != 1)
        signature.clear();
    return signature;
}

bool RSA::verifySha256(Memory const& data, Memory const& signature) {
    QUILLON_ASSERT(valid(), "a key is loaded");
    ErrorQueueGuard const guard;
    auto const digest = sha256(data);
    return signature.size() == signLength() && RSA_verify(NID_sha256, digest.data(), digest.size(),
                                                          signature.bytes(), signLength(), m_handle) == 1;
}

Memory RSA::signSha256(Memory const& data) {
    QUILLON_ASSERT(valid(), "a key is loaded");
    ErrorQueueGuard const guard;
    auto const digest = sha256(data);
    Memory signature;
    signature.resize(signLength());
    unsigned written = 0;
    if (RSA_sign(NID_sha256, digest.data(), digest.size(), signature.bytes(), &written, m_handle) != 1)
        signature.clear();
    return signature;
}

int RSA::encrypt(unsigned char const* plain, unsigned long length, unsigned char* out) {
    QUILLON_ASSERT(valid(), "a key is loaded");
    if (length > maxPlainLength())
        return -1;
    ErrorQueueGuard const guard;
    return RSA_public_encrypt(static_cast<int>(length), plain, out, m_handle, RSA_PKCS1_OAEP_PADDING);
}

bool RSA::encrypt(Memory const& plain, Memory& cipher) {
    Memory out;
    out.resize(encryptLength());
    int const written = encrypt(plain.bytes(), plain.size(), out.bytes());
    out.resize(written < 0 ? 0 : static_cast<std::size_t>(written));
    cipher = std::move(out);
    return written >= 0;
}

int RSA::decrypt(unsigned char const* cipher, unsigned long length, unsigned char* out) {
    QUILLON_ASSERT(valid(), "a key is loaded");
    if (length != encryptLength())
        return -1;
    ErrorQueueGuard const guard;
    return RSA_private_decrypt(static_cast<int>(length), cipher, out, m_handle, RSA_PKCS1_OAEP_PADDING);
}

bool RSA::decrypt(Memory const& cipher, Memory& plain) {
    Memory out;
    out.resize(decryptLength());
    int const written = decrypt(cipher.bytes(), cipher.size(), out.bytes());
    out.resize(written < 0 ? 0 : static_cast<std::size_t>(written));
    plain = std::move(out);
    return written >= 0;
}

} // namespace quillon::tls
