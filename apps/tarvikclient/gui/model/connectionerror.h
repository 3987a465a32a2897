// What kept the client from its gateway.
#pragma once

#include "base/certificatefacts.h"

#include <optional>

namespace quillon {

class RequestInfo;

/// Each is something else to tell a person, or something else for that person to do.
enum class ConnectionFault {
    nameNotFound,
    noRoute,
    refused,
    timedOut,
    brokenOff,
    certificateExpired,
    certificateNotYetValid,
    certificateOfAnother,
    certificateOfUnknownIssuer,
    certificateSelfSigned,
    certificateRevoked,
    certificateBad,     ///< for another reason
    certificateUnknown, ///< it did not verify, and no more is known
    noTrustList,        ///< this computer's own certificates cannot be read
    notSecure,          ///< TLS failed before it came to certificates
    proxyNotFound,
    proxyUnusable,
    proxyLogin,
    proxyRefuses,
    proxyCertificate,
    httpError,
    notUnderstood,
    other
};

/// A value.
struct ConnectionError {
    ConnectionFault fault = ConnectionFault::other;
    unsigned status = 0; ///< of the HTTP reply that the fault is about; 0 where there was none
    /// A stranger's; there where the fault is about one and it is known.
    std::optional<CertificateFacts> certificate = {};

    /// Whether the fault goes away when certificates of this gateway are not checked any more.
    bool isOfGatewaysCertificate() const noexcept {
        return fault >= ConnectionFault::certificateExpired && fault <= ConnectionFault::certificateUnknown;
    }
};

/// Of a transfer that failed. Any thread.
ConnectionError connectionErrorOf(RequestInfo const& information);

} // namespace quillon
