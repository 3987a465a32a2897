// What signs and what verifies.
#pragma once

#include "base/memory.h"

namespace quillon {

/// Holds a private key.
class ISign {
public:
    virtual ~ISign() = default;
    /// The signature over `data`; empty when it cannot be made.
    virtual Memory sign(Memory const& data) = 0;
};

/// Holds a public key.
class IVerify {
public:
    virtual ~IVerify() = default;
    /// Whether `signature` is this key's signature over `data`; false also for one of the wrong length.
    virtual bool verify(Memory const& data, Memory const& signature) = 0;
    /// The same of a signature over SHA-256.
    virtual bool verifySha256(Memory const& data, Memory const& signature) = 0;
};

} // namespace quillon
