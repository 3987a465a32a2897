// The functions that libcurl calls during a transfer.
#pragma once

#include "http/responseheader.h"

#include "base/writer.h"

#include <cstddef>

namespace quillon {

/// Where a body is collected, and how far.
struct MemoryTarget {
    /// No reply that is kept in memory is longer, in bytes.
    static constexpr std::size_t maxBodySize = 256u << 20;

    Memory& memory;
    std::size_t limit = maxBodySize;
};

// Each is called on the thread that performs the transfer, with `count` elements of `size` bytes, and returns
// how many bytes it took; fewer make libcurl end the transfer with a write error. No exception leaves them.

/// `target` is a MemoryTarget. Takes all or, beyond the limit, nothing.
std::size_t writeToMemory(char* bytes, std::size_t size, std::size_t count, void* target) noexcept;
/// `target` is an IWriter. Takes nothing when the writer throws.
std::size_t writeToWriter(char* bytes, std::size_t size, std::size_t count, void* target) noexcept;
/// `target` is an http::ResponseHeader: each status line starts it anew, so that only the last reply's header
/// remains of interim replies and those of a proxy.
std::size_t readHeaderLine(char* bytes, std::size_t size, std::size_t count, void* target) noexcept;

} // namespace quillon
