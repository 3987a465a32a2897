#include "base/base64.h"

#include "base/assertion.h"

#include <array>

namespace quillon {

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr auto reverse = [] {
    std::array<unsigned char, 256> table{};
    for (unsigned i = 0; i < 64; ++i)
        table[static_cast<unsigned char>(alphabet[i])] = static_cast<unsigned char>(i);
    return table;
}();

bool isSkipped(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

} // namespace

void Base64::encode(char const* in, char* out, unsigned length) {
    auto const byte = [&](unsigned i) { return i < length ? static_cast<unsigned char>(in[i]) : 0u; };
    for (unsigned i = 0; i < length; i += 3) {
        unsigned const group = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
        *out++ = alphabet[group >> 18];
        *out++ = alphabet[group >> 12 & 63];
        *out++ = i + 1 < length ? alphabet[group >> 6 & 63] : '=';
        *out++ = i + 2 < length ? alphabet[group & 63] : '=';
    }
}

String Base64::encode(char const* bytes, unsigned length) {
    constexpr unsigned longest = String::npos / 4 * 3 - 3;
    QUILLON_ASSERT(length <= longest, "a string is shorter than npos");
    String text;
    unsigned const size = sizeEncode(length);
    encode(bytes, text.reserve(size), length);
    text.resize(size);
    return text;
}

String Base64::encode(String const& bytes) {
    return encode(bytes.array(), bytes.length());
}

String Base64::encode(Memory const& bytes) {
    return encode(bytes.array(), static_cast<unsigned>(bytes.size()));
}

String Base64::encode(char const* text) {
    return encode(String(text));
}

int Base64::decode(char const* in, char* out, unsigned length) {
    int const bound = static_cast<int>(sizeDecode(length));
    int written = 0;
    unsigned bits = 0;
    unsigned place = 0; // in the group of four
    for (unsigned i = 0; i < length && written < bound; ++i) {
        if (isSkipped(in[i]))
            continue;
        if (in[i] == '=' && place >= 2)
            break;
        bits = bits << 6 | reverse[static_cast<unsigned char>(in[i])];
        if (place > 0)
            out[written++] = static_cast<char>(bits >> (6 - 2 * place) & 0xFF);
        place = (place + 1) % 4;
    }
    return written;
}

Memory Base64::decode(char const* text, unsigned length) {
    Memory bytes;
    bytes.resize(sizeDecode(length));
    bytes.resize(static_cast<std::size_t>(decode(text, bytes.array(), length)));
    return bytes;
}

Memory Base64::decode(String const& text) {
    return decode(text.array(), text.length());
}

Memory Base64::decode(char const* text) {
    return decode(String(text));
}

} // namespace quillon
