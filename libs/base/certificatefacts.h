// What a TLS library says about a certificate.
#pragma once

#include "base/string.h"

#include <ctime>

namespace quillon {

/// One certificate as a verification saw it, and the verdict on it. A value. The texts are a stranger's: they
/// may hold anything, but are not long.
struct CertificateFacts {
    static constexpr unsigned longestName = 200; ///< bytes

    String subject; ///< whose it is, in UTF-8; empty when it does not say
    String issuer;
    std::time_t notBefore = 0; ///< seconds since 1970; 0: unknown
    std::time_t notAfter = 0;
    int verdict = 0; ///< X509_V_...; 0: accepted
};

} // namespace quillon
