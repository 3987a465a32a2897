#include "support/testcertificate.h"

#include <openssl/ec.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <stdexcept>

namespace quillon::test {

namespace {

template <auto free>
struct Freer {
    template <class T>
    void operator()(T* object) const {
        free(object);
    }
};

using Key = std::unique_ptr<EVP_PKEY, Freer<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Freer<X509_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Freer<X509_EXTENSION_free>>;

void require(bool done, char const* what) {
    if (!done)
        throw std::runtime_error(std::string("test certificate: ") + what);
}

void addExtension(X509* certificate, int kind, char const* value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    Extension const extension(X509V3_EXT_conf_nid(nullptr, &context, kind, value));
    require(extension && X509_add_ext(certificate, extension.get(), -1) == 1, value);
}

Certificate makeCertificate(EVP_PKEY* key, CertificateLooks const& looks) {
    constexpr long dayInSeconds = 24 * 60 * 60;
    Certificate certificate(X509_new());
    require(certificate != nullptr, "X509_new");
    X509* const x509 = certificate.get();
    X509_set_version(x509, X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(x509), 1);
    X509_gmtime_adj(X509_getm_notBefore(x509), looks.fromDays * dayInSeconds);
    X509_gmtime_adj(X509_getm_notAfter(x509), looks.toDays * dayInSeconds);
    X509_set_pubkey(x509, key);
    X509_NAME* const name = X509_get_subject_name(x509);
    // As it stands: with a kind of its own the text is not checked.
    X509_NAME_add_entry_by_NID(name, NID_commonName, V_ASN1_UTF8STRING,
                               reinterpret_cast<unsigned char const*>(looks.name.data()),
                               static_cast<int>(looks.name.size()), -1, 0);
    X509_set_issuer_name(x509, name);
    addExtension(x509, NID_subject_alt_name, looks.hosts);
    addExtension(x509, NID_basic_constraints, "critical,CA:TRUE");
    require(X509_sign(x509, key, EVP_sha256()) != 0, "X509_sign");
    return certificate;
}

} // namespace

void TestCertificate::Free::operator()(ssl_ctx_st* context) const {
    SSL_CTX_free(context);
}

TestCertificate::TestCertificate(CertificateLooks const& looks)
    : m_context(SSL_CTX_new(TLS_server_method())) {
    require(m_context != nullptr, "SSL_CTX_new");
    Key const key(EVP_EC_gen("P-256"));
    require(key != nullptr, "EVP_EC_gen");
    Certificate const certificate = makeCertificate(key.get(), looks);
    require(SSL_CTX_use_certificate(m_context.get(), certificate.get()) == 1, "SSL_CTX_use_certificate");
    require(SSL_CTX_use_PrivateKey(m_context.get(), key.get()) == 1, "SSL_CTX_use_PrivateKey");
}

X509* TestCertificate::certificate() const noexcept {
    return SSL_CTX_get0_certificate(m_context.get());
}

} // namespace quillon::test
