#include "base/digest.h"

#include <algorithm>

namespace quillon {

Memory Digest::computehash(IDigest& digest, IReader& source) {
    constexpr unsigned chunk = 1024;
    Memory buffer;
    buffer.reserve(chunk);
    while (unsigned const left = source.sizeToRead()) {
        source.read(buffer, std::min(left, chunk));
        digest.update(buffer);
    }
    return digest.final();
}

} // namespace quillon
