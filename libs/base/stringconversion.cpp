#include "base/stringconversion.h"

#include "base/ascii.h"

#include <cstdio>
#include <cstdlib>
#include <type_traits>

namespace quillon {

namespace {

template <unsigned Size, class T>
String formatted(char const* format, T value) {
    String text;
    int const written = std::snprintf(text.reserve(Size - 1), Size, format, value);
    text.resize(static_cast<unsigned>(written));
    return text;
}

template <class T>
T to(String const& text) {
    using U = std::make_unsigned_t<T>;
    unsigned position = 0;
    bool negative = false;
    if (!text.empty() && (text[0] == '+' || text[0] == '-')) {
        negative = text[0] == '-';
        position = 1;
    }
    U value = 0;
    for (; position < text.length() && ascii::isDigit(text[position]); ++position)
        value = static_cast<U>(value * 10u + static_cast<U>(text[position] - '0'));
    return static_cast<T>(negative ? static_cast<U>(0u - value) : value);
}

} // namespace

String toString(int value) {
    return formatted<12>("%d", value);
}
String toString(unsigned int value) {
    return formatted<11>("%u", value);
}
String toString(unsigned long value) {
    return formatted<21>("%lu", value);
}
String toString(unsigned short value) {
    return formatted<6>("%hu", value);
}
String toString(short value) {
    return formatted<7>("%hd", value);
}
String toString(unsigned char value) {
    return formatted<4>("%hhu", value);
}
String toString(bool value) {
    return value ? "true" : "false";
}
String toString(void const* value) {
    return formatted<2 * sizeof(value) + 8>("%p", value);
}
String toString(char const* text) {
    return String(text);
}
String const& toString(String const& text) {
    return text;
}

String toString(unsigned int value, char const* format) {
    int const length = std::snprintf(nullptr, 0, format, value);
    if (length <= 0)
        return String();
    String text;
    std::snprintf(text.reserve(static_cast<unsigned>(length)), static_cast<std::size_t>(length) + 1, format,
                  value);
    text.resize(static_cast<unsigned>(length));
    return text;
}

std::uint32_t toUint32(String const& text) {
    return to<std::uint32_t>(text);
}
std::uint64_t toUint64(String const& text) {
    return to<std::uint64_t>(text);
}
std::uint16_t toUint16(String const& text) {
    return to<std::uint16_t>(text);
}
long toLong(String const& text) {
    return to<long>(text);
}
std::int32_t toInt32(String const& text) {
    return static_cast<std::int32_t>(std::strtol(text.str(), nullptr, 10));
}
std::int16_t toInt16(String const& text) {
    return static_cast<std::int16_t>(std::strtol(text.str(), nullptr, 10));
}

std::uint32_t hexToUint32(String const& text) {
    std::uint32_t value = 0;
    for (char const c : text) {
        int const digit = ascii::hexValue(c);
        if (digit < 0)
            break;
        value = value * 16 + static_cast<std::uint32_t>(digit);
    }
    return value;
}

String uint32ToHex(std::uint32_t value) {
    return toString(value, "%x");
}

int smartIntConversion(char const* text, unsigned length, int defaultValue) {
    if (length == 0)
        return defaultValue;
    unsigned value = 0;
    for (unsigned i = 0; i < length; ++i) {
        if (!ascii::isDigit(text[i]))
            return defaultValue;
        value = value * 10 + static_cast<unsigned>(text[i] - '0');
    }
    return static_cast<int>(value);
}

} // namespace quillon
