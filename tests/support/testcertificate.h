// A certificate made in memory for one test server.
#pragma once

#include <memory>
#include <string>

struct ssl_ctx_st;
struct x509_st;

namespace quillon::test {

/// What a certificate says; the name may be anything.
struct CertificateLooks {
    std::string name = "localhost";
    int fromDays = -1, toDays = 1; ///< validity, from now
    char const* hosts = "IP:127.0.0.1,DNS:localhost";
};

/// A TLS server context with a fresh key and a self-signed certificate for 127.0.0.1 and localhost, unless
/// it is to look otherwise. The
/// context may be used by several threads at once.
class TestCertificate {
public:
    /// Throws std::runtime_error when OpenSSL refuses.
    explicit TestCertificate(CertificateLooks const& looks = {});

    ssl_ctx_st* context() const noexcept { return m_context.get(); }
    /// It belongs to the context.
    x509_st* certificate() const noexcept;

private:
    struct Free {
        void operator()(ssl_ctx_st* context) const;
    };

    std::unique_ptr<ssl_ctx_st, Free> m_context;
};

} // namespace quillon::test
