#include "devgateway/certificate.h"

#include <openssl/bn.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>
#include <openssl/x509v3.h>

#include <stdexcept>

namespace devgateway {

namespace {

constexpr long secondsPerDay = 24L * 60 * 60;

void check(bool ok, char const* what) {
    if (ok)
        return;
    char reason[256];
    ERR_error_string_n(ERR_get_error(), reason, sizeof reason);
    throw std::runtime_error(std::string("cannot make a certificate: ") + what + ": " + reason);
}

using MemoryBio = std::unique_ptr<BIO, decltype(&BIO_free)>;

MemoryBio memoryBio() {
    MemoryBio bio(BIO_new(BIO_s_mem()), &BIO_free);
    check(bio != nullptr, "memory");
    return bio;
}

std::string contentOf(MemoryBio const& bio) {
    char* text = nullptr;
    long const length = BIO_get_mem_data(bio.get(), &text);
    return {text, static_cast<size_t>(length)};
}

} // namespace

Certificate::Certificate() : m_key(EVP_RSA_gen(2048)), m_certificate(X509_new()) {
    check(m_key && m_certificate, "key");
    check(X509_set_version(m_certificate.get(), X509_VERSION_3), "version");
    check(X509_set_pubkey(m_certificate.get(), m_key.get()), "public key");
    setSerialAndValidity();
}

Certificate Certificate::forServer() {
    Certificate made;
    made.setName("localhost");
    made.addExtension(NID_basic_constraints, "critical,CA:FALSE");
    made.addExtension(NID_ext_key_usage, "serverAuth");
    made.addExtension(NID_subject_alt_name, "DNS:localhost,IP:127.0.0.1,IP:::1");
    made.sign();
    return made;
}

Certificate Certificate::forClient(std::string const& commonName) {
    Certificate made;
    made.setName(commonName);
    made.addExtension(NID_basic_constraints, "critical,CA:FALSE");
    made.addExtension(NID_ext_key_usage, "clientAuth");
    made.sign();
    return made;
}

void Certificate::setName(std::string const& commonName) {
    X509_NAME* name = X509_get_subject_name(m_certificate.get());
    auto const* text = reinterpret_cast<unsigned char const*>(commonName.c_str());
    check(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8, text, -1, -1, 0), "name");
    check(X509_set_issuer_name(m_certificate.get(), name), "issuer");
}

/// The serial number is random: browsers refuse a second certificate with the issuer and number of another.
/// The validity begins a day ago, for clients whose clock is behind.
void Certificate::setSerialAndValidity() {
    std::unique_ptr<BIGNUM, decltype(&BN_free)> const serial(BN_new(), &BN_free);
    check(serial && BN_rand(serial.get(), 120, BN_RAND_TOP_ONE, BN_RAND_BOTTOM_ANY), "serial number");
    check(BN_to_ASN1_INTEGER(serial.get(), X509_get_serialNumber(m_certificate.get())), "serial number");
    check(X509_gmtime_adj(X509_getm_notBefore(m_certificate.get()), -secondsPerDay), "validity");
    check(X509_gmtime_adj(X509_getm_notAfter(m_certificate.get()), 30 * secondsPerDay), "validity");
}

void Certificate::addExtension(int nid, char const* value) {
    std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> const extension(
        X509V3_EXT_conf_nid(nullptr, nullptr, nid, value), &X509_EXTENSION_free);
    check(extension && X509_add_ext(m_certificate.get(), extension.get(), -1), value);
}

void Certificate::sign() {
    check(X509_sign(m_certificate.get(), m_key.get(), EVP_sha256()) > 0, "signature");
}

std::string Certificate::certificatePem() const {
    MemoryBio const bio = memoryBio();
    check(PEM_write_bio_X509(bio.get(), m_certificate.get()), "PEM");
    return contentOf(bio);
}

std::string Certificate::keyPem(std::string const& password) const {
    MemoryBio const bio = memoryBio();
    check(PEM_write_bio_PKCS8PrivateKey(bio.get(), m_key.get(), EVP_aes_256_cbc(), password.data(),
                                        static_cast<int>(password.size()), nullptr, nullptr),
          "PEM");
    return contentOf(bio);
}

} // namespace devgateway
