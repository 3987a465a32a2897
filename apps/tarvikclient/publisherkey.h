// The key against which modules are verified.
#pragma once

namespace quillon {

/// The publisher's RSA public key in PEM (SubjectPublicKeyInfo), compiled in.
extern char const publisherKeyPem[];

} // namespace quillon
