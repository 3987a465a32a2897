// What is known of a failed transfer beside libcurl's code and texts.
#pragma once

#include "base/certificatefacts.h"

#include <optional>

namespace quillon {

/// A value; empty for a transfer that was completed, but for the certificate.
struct TransferFacts {
    int systemError = 0;       ///< errno of the last attempt to connect; 0: there was no failed one
    bool atProxy = false;      ///< the connection that failed was the one to the proxy
    unsigned proxyStatus = 0;  ///< HTTP status of the proxy's answer to CONNECT; 0: none
    bool proxyRefused = false; ///< the proxy's own certificate did not verify
    /// Of the verification that was made last; none where the TLS library does not tell.
    std::optional<CertificateFacts> certificate = {};
};

} // namespace quillon
