// Numbers and other encodings to text and back. No function here reports a failure: what cannot be read is 0.
#pragma once

#include "base/string.h"

#include <cstdint>

namespace quillon {

String toString(int value);
String toString(unsigned int value);
String toString(unsigned long value);
String toString(unsigned short value);
String toString(short value);
String toString(unsigned char value);
/// "true" or "false".
String toString(bool value);
/// As printf's "%p".
String toString(void const* value);
/// `format` is a printf format for one unsigned int.
String toString(unsigned int value, char const* format);
/// Wraps the text; copies nothing.
String toString(char const* text);
String const& toString(String const& text);
/// UTF-16 in host byte order, ended by a 0 unit, to UTF-8.
String toString(unsigned short const* text);

/// Decimal digits up to the first byte that is none, wrapping in the target's width. A leading "+" is
/// skipped; a leading "-" negates in the unsigned type.
std::uint32_t toUint32(String const& text);
std::uint64_t toUint64(String const& text);
std::uint16_t toUint16(String const& text);
long toLong(String const& text);

/// As the C library's atol, cut to the width: leading white space is accepted.
std::int32_t toInt32(String const& text);
std::int16_t toInt16(String const& text);

/// Hexadecimal digits of either case up to the first byte that is none, wrapping.
std::uint32_t hexToUint32(String const& text);
/// Lower-case hexadecimal without leading zeros.
String uint32ToHex(std::uint32_t value);
/// The decimal value of `length` digits, or `defaultValue` when there are none or any byte is not a digit.
int smartIntConversion(char const* text, unsigned length, int defaultValue);

/// `count` units in host byte order. A lone surrogate becomes U+FFFD.
String utf16toutf8(unsigned short const* text, unsigned count);
/// ASCII with a numeric character reference for everything above it and for the characters that mark up HTML.
String utf16tohtml(unsigned short const* text, unsigned count);

/// A file pattern with "*" and "?" as an anchored regular expression (POSIX extended).
String wildcard2regex(String const& pattern);

} // namespace quillon
