// What a TLS connection found wrong with its peer's certificate.
#pragma once

#include "base/certificatefacts.h"

#include <optional>

namespace quillon::tls {

/// Whether `library`, "OpenSSL/3.0.19" for instance, is the OpenSSL that this process calls: only then are
/// its contexts ours to look into.
bool isThisLibrary(String const& library);

/// Has each verification that a context makes put into `note` what it saw: the certificate that it stopped
/// at, or the peer's own where it accepted all of them. Changes nothing about what is verified and what
/// follows from it. `context` is an SSL_CTX whose verification nobody else has taken over, and `note`
/// outlives it and is used by its connections' thread alone.
void noteVerification(void* context, std::optional<CertificateFacts>& note) noexcept;

} // namespace quillon::tls
