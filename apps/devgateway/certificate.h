// Certificates and keys made in memory; nothing is read from disk.
#pragma once

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <memory>
#include <string>

namespace devgateway {

/// A self-signed certificate with its RSA key of 2048 bits. Constant once made; any thread may read it.
class Certificate {
public:
    /// The gateway's: for localhost, 127.0.0.1 and ::1. Throws std::runtime_error.
    static Certificate forServer();

    /// One for a client to show. Throws std::runtime_error.
    static Certificate forClient(std::string const& commonName);

    /// The certificate in PEM.
    std::string certificatePem() const;

    /// The private key in PEM (PKCS #8), encrypted with the password.
    std::string keyPem(std::string const& password) const;

    /// Both belong to this object.
    X509* certificate() const { return m_certificate.get(); }
    EVP_PKEY* key() const { return m_key.get(); }

private:
    struct Free {
        void operator()(X509* certificate) const { X509_free(certificate); }
        void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    };

    Certificate();

    void setName(std::string const& commonName);
    void setSerialAndValidity();
    void addExtension(int nid, char const* value);
    void sign();

    std::unique_ptr<EVP_PKEY, Free> m_key;
    std::unique_ptr<X509, Free> m_certificate;
};

} // namespace devgateway
