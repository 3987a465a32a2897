// What the fuzz targets share.
#pragma once

#include "base/string.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace quillon::fuzz {

/// The input as a string that owns its bytes, so that a read past them is seen.
inline String inputOf(std::uint8_t const* data, std::size_t size) {
    return String::copyOf({reinterpret_cast<char const*>(data), size});
}

/// What must hold of every input.
inline void require(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace quillon::fuzz

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);
