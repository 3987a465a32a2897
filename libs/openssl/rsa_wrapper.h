// An RSA key that signs, verifies, encrypts and decrypts.
#pragma once

#include "base/sign.h"

struct bio_st;
struct rsa_st;

namespace quillon::tls {

/// Owns one RSA key, public or private, or none. Signatures are PKCS#1 v1.5 (RFC 8017, section 8.2) over
/// SHA-1, which is what deployed modules are signed with, unless an operation's name says otherwise. No
/// operation throws or leaves errors in OpenSSL's queue. One thread at a time.
///
/// Signing, verifying, encrypting and decrypting without a key is a fatal assertion.
class RSA final : public ISign, public IVerify {
public:
    RSA() = default;
    RSA(RSA const&) = delete;
    RSA& operator=(RSA const&) = delete;
    ~RSA() override { destroy(); }

    // Loading replaces the key that was there; when it fails (false) there is none afterwards. A public key
    // is read in SubjectPublicKeyInfo form, "-----BEGIN PUBLIC KEY-----", only. `password` may be null; it is
    // used for encrypted private keys.
    bool loadFromMem(char const* pem, char const* password, bool publicKey);
    bool loadFromPem(char const* fileName, char const* password, bool publicKey);
    /// `bio` stays the caller's.
    bool loadFromBIO(bio_st* bio, char const* password, bool publicKey);

    /// Gives OpenSSL the password that `password`, a C string or null, points at: copies it with its NUL and
    /// returns its length, or 0 when there is none or `size` bytes do not hold it.
    static int defaultPasswordCallback(char* buffer, int size, int rwflag, void* password);

    /// Makes a key pair of 512 to 16384 bits in place of the key that was there; false when it cannot.
    bool generateKey(unsigned bits);
    /// The public half as SubjectPublicKeyInfo or the private key as PKCS#8, in PEM; a private key is
    /// encrypted when there is a password. Empty when there is no such key.
    String toPem(bool publicKey, char const* password = nullptr) const;

    bool valid() const noexcept { return m_handle != nullptr; }
    /// OpenSSL's key, or null; stays this object's.
    rsa_st* handle() const noexcept { return m_handle; }
    /// Frees the key.
    void destroy() noexcept;

    /// 1 when `signature`, signLength() bytes, is this key's over `length` bytes of `data`.
    int verify(unsigned char const* data, unsigned long length, unsigned char const* signature);
    bool verify(Memory const& data, Memory const& signature) override;

    /// 1 when the signature, signLength() bytes, has been written to `out`.
    int sign(unsigned char const* data, unsigned long length, unsigned char* out);
    Memory sign(Memory const& data) override;

    // The same over SHA-256.
    bool verifySha256(Memory const& data, Memory const& signature) override;
    Memory signSha256(Memory const& data);

    /// The length of the key's signatures in bytes; 0 without a key.
    unsigned signLength() const noexcept;

    /// Encrypts with the public key and OAEP padding (RFC 8017, section 7.1); `plain` is at most
    /// maxPlainLength() bytes. Writes encryptLength() bytes to `out` and returns their number, or -1.
    int encrypt(unsigned char const* plain, unsigned long length, unsigned char* out);
    bool encrypt(Memory const& plain, Memory& cipher);
    unsigned encryptLength() const noexcept { return signLength(); }
    unsigned maxPlainLength() const noexcept;

    /// Undoes encrypt() with the private key; `cipher` is encryptLength() bytes. Writes at most
    /// decryptLength() bytes to `out` and returns their number, or -1.
    int decrypt(unsigned char const* cipher, unsigned long length, unsigned char* out);
    bool decrypt(Memory const& cipher, Memory& plain);
    unsigned decryptLength() const noexcept { return signLength(); }

private:
    rsa_st* m_handle = nullptr;
};

} // namespace quillon::tls
