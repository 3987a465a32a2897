// Base64 (RFC 4648, section 4), without line breaks when encoding.
#pragma once

#include "base/memory.h"

namespace quillon {

/// Static functions only; any thread.
///
/// Decoding is lenient: blanks, tabs, CR and LF between characters are skipped, characters outside the
/// alphabet count as zero bits, and the first "=" in the third or fourth place of a group of four ends the
/// text. What has been decoded until then is kept, up to the bound that sizeDecode() gives.
class Base64 {
public:
    Base64() = delete;

    static String encode(String const& bytes);
    static String encode(Memory const& bytes);
    static String encode(char const* text);
    static String encode(char const* bytes, unsigned length);
    /// `out` takes sizeEncode(length) characters; no NUL is written.
    static void encode(char const* in, char* out, unsigned length);
    /// The number of characters for `n` bytes.
    static unsigned sizeEncode(unsigned n) noexcept { return n == 0 ? 0 : ((n - 1) / 3) * 4 + 4; }

    static Memory decode(String const& text);
    static Memory decode(char const* text);
    static Memory decode(char const* text, unsigned length);
    /// Returns the number of bytes written, at most sizeDecode(length).
    static int decode(char const* in, char* out, unsigned length);
    /// The bound of the number of bytes that `n` characters decode to.
    static unsigned sizeDecode(unsigned n) noexcept { return n / 4 * 3; }
};

} // namespace quillon
