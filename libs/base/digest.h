// Message digests.
#pragma once

#include "base/serialize.h"

namespace quillon {

/// A running digest. One thread at a time.
class IDigest {
public:
    virtual ~IDigest() = default;
    virtual void update(Memory const& bytes) = 0;
    /// The raw digest of all bytes so far; the digest takes no more afterwards.
    virtual Memory final() = 0;
};

/// Base of the digest classes.
class Digest : public IDigest {
public:
    /// The raw digest of `source` from its position to its end, read in pieces of 1024 bytes. What the source
    /// throws passes through.
    static Memory computehash(IDigest& digest, IReader& source);
    Memory computehash(IReader& source) { return computehash(*this, source); }
};

} // namespace quillon
