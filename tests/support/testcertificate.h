// A certificate made in memory for one test server.
#pragma once

#include <memory>

struct ssl_ctx_st;

namespace quillon::test {

/// A TLS server context with a fresh key and a self-signed certificate for 127.0.0.1 and localhost. The
/// context may be used by several threads at once.
class TestCertificate {
public:
    /// Throws std::runtime_error when OpenSSL refuses.
    TestCertificate();

    ssl_ctx_st* context() const noexcept { return m_context.get(); }

private:
    struct Free {
        void operator()(ssl_ctx_st* context) const;
    };

    std::unique_ptr<ssl_ctx_st, Free> m_context;
};

} // namespace quillon::test
