// Where keys come from and go to.
#include "openssl/errorqueue.h"
#include "openssl/rsa_wrapper.h"

#include <openssl/bn.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>
#include <openssl/x509.h>

#include <limits>
#include <memory>

namespace quillon::tls {

namespace {

struct Free {
    void operator()(BIO* bio) const { BIO_free(bio); }
    void operator()(BIGNUM* number) const { BN_free(number); }
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    void operator()(::RSA* key) const { RSA_free(key); }
};

template <class T>
using Owned = std::unique_ptr<T, Free>;

constexpr unsigned leastBits = 512;
constexpr unsigned mostBits = OPENSSL_RSA_MAX_MODULUS_BITS;

// OpenSSL's own reader of public keys takes other forms too, PKCS#1 among them.
EVP_PKEY* readPublic(BIO* bio, void* password) {
    unsigned char* der = nullptr;
    long length = 0;
    if (PEM_bytes_read_bio(&der, &length, nullptr, PEM_STRING_PUBLIC, bio, &RSA::defaultPasswordCallback,
                           password) != 1)
        return nullptr;
    unsigned char const* position = der;
    EVP_PKEY* const key = d2i_PUBKEY(nullptr, &position, length);
    OPENSSL_free(der);
    return key;
}

EVP_PKEY* readPrivate(BIO* bio, void* password) {
    return PEM_read_bio_PrivateKey(bio, nullptr, &RSA::defaultPasswordCallback, password);
}

bool writePrivate(BIO* bio, ::RSA* key, char const* password) {
    Owned<EVP_PKEY> const wrapped(EVP_PKEY_new());
    if (!wrapped || EVP_PKEY_set1_RSA(wrapped.get(), key) != 1)
        return false;
    return PEM_write_bio_PKCS8PrivateKey(bio, wrapped.get(), password ? EVP_aes_256_cbc() : nullptr, nullptr,
                                         0, &RSA::defaultPasswordCallback, const_cast<char*>(password)) == 1;
}

bool isPrivate(::RSA const* key) {
    BIGNUM const* exponent = nullptr;
    RSA_get0_key(key, nullptr, nullptr, &exponent);
    return exponent != nullptr;
}

} // namespace

int RSA::defaultPasswordCallback(char* buffer, int size, int, void* password) {
    if (!password)
        return 0;
    char const* const text = static_cast<char const*>(password);
    std::size_t const length = std::strlen(text);
    if (size < 0 || static_cast<std::size_t>(size) < length + 1)
        return 0;
    std::memcpy(buffer, text, length + 1);
    return static_cast<int>(length);
}

bool RSA::loadFromMem(char const* pem, char const* password, bool publicKey) {
    ErrorQueueGuard const guard;
    std::size_t const length = pem ? std::strlen(pem) : 0;
    if (length == 0 || length > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        destroy();
        return false;
    }
    Owned<BIO> const bio(BIO_new_mem_buf(pem, static_cast<int>(length)));
    return loadFromBIO(bio.get(), password, publicKey);
}

bool RSA::loadFromPem(char const* fileName, char const* password, bool publicKey) {
    ErrorQueueGuard const guard;
    Owned<BIO> bio(BIO_new(BIO_s_file()));
    if (!fileName || !bio || BIO_read_filename(bio.get(), fileName) != 1)
        bio.reset();
    return loadFromBIO(bio.get(), password, publicKey);
}

bool RSA::loadFromBIO(bio_st* bio, char const* password, bool publicKey) {
    destroy();
    if (!bio)
        return false;
    ErrorQueueGuard const guard;
    auto const read = publicKey ? &readPublic : &readPrivate;
    Owned<EVP_PKEY> const key(read(bio, const_cast<char*>(password)));
    if (key)
        m_handle = EVP_PKEY_get1_RSA(key.get()); // null for a key of another kind
    return valid();
}

bool RSA::generateKey(unsigned bits) {
    destroy();
    if (bits < leastBits || bits > mostBits)
        return false;
    ErrorQueueGuard const guard;
    Owned<BIGNUM> const exponent(BN_new());
    Owned<::RSA> key(RSA_new());
    if (exponent && key && BN_set_word(exponent.get(), RSA_F4) == 1 &&
        RSA_generate_key_ex(key.get(), static_cast<int>(bits), exponent.get(), nullptr) == 1)
        m_handle = key.release();
    return valid();
}

String RSA::toPem(bool publicKey, char const* password) const {
    ErrorQueueGuard const guard;
    Owned<BIO> const bio(BIO_new(BIO_s_mem()));
    if (!valid() || !bio || (!publicKey && !isPrivate(m_handle)))
        return String();
    if (!(publicKey ? PEM_write_bio_RSA_PUBKEY(bio.get(), m_handle) == 1
                    : writePrivate(bio.get(), m_handle, password)))
        return String();
    char* text = nullptr;
    long const length = BIO_get_mem_data(bio.get(), &text);
    return String::copyOf({text, static_cast<std::size_t>(length)});
}

void RSA::destroy() noexcept {
    RSA_free(m_handle);
    m_handle = nullptr;
}

} // namespace quillon::tls
