// The functions that libcurl calls during a transfer.
#pragma once

#include "base/writer.h"
#include "http/responseheader.h"

#include <cstddef>

namespace quillon {

class LongHead;

/// Where a body is collected, and how far.
struct MemoryTarget {
    /// No reply that is kept in memory is longer, in bytes.
    static constexpr std::size_t maxBodySize = 4u << 20;

    Memory& memory;
    std::size_t limit = maxBodySize;
};

/// Where the header lines of one transfer go.
struct HeaderTarget {
    /// All of a transfer's header lines together are no longer, in bytes: those of interim replies and of a
    /// proxy and those behind the body too.
    static constexpr std::size_t maxHeaderSize = 256u << 10;

    http::ResponseHeader& header;
    LongHead* longHead; // told about each reply, unless null
    std::size_t left = maxHeaderSize;
};

// Each is called on the thread that performs the transfer, with `count` elements of `size` bytes, and returns
// how many bytes it took; fewer make libcurl end the transfer with a write error. No exception leaves them.

/// `target` is a MemoryTarget. Takes all or, beyond the limit, nothing.
std::size_t writeToMemory(char* bytes, std::size_t size, std::size_t count, void* target) noexcept;
/// `target` is an IWriter. Takes nothing when the writer throws.
std::size_t writeToWriter(char* bytes, std::size_t size, std::size_t count, void* target) noexcept;
/// `target` is a HeaderTarget: each status line starts its header anew, so that only the last reply's header
/// remains of interim replies and those of a proxy. Takes nothing beyond the limit and no line that announces
/// a body in another transfer coding than "chunked": nobody asks for one, and libcurl would expand it, which
/// may cost 128 MB for each of up to five codings.
std::size_t readHeaderLine(char* bytes, std::size_t size, std::size_t count, void* target) noexcept;

} // namespace quillon
