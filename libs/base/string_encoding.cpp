// UTF-16 and pattern conversions.
#include "base/stringconversion.h"

namespace quillon {

namespace {

constexpr std::uint32_t replacementCharacter = 0xFFFD;

/// Takes the character at `position` and moves behind it.
std::uint32_t nextCharacter(unsigned short const* text, unsigned count, unsigned& position) {
    std::uint32_t const unit = text[position++];
    if (unit < 0xD800 || unit > 0xDFFF)
        return unit;
    if (unit > 0xDBFF || position == count || text[position] < 0xDC00 || text[position] > 0xDFFF)
        return replacementCharacter;
    return 0x10000 + ((unit - 0xD800) << 10) + (text[position++] - 0xDC00u);
}

void appendUtf8(String& out, std::uint32_t c) {
    if (c < 0x80) {
        out.append(static_cast<char>(c));
    } else if (c < 0x800) {
        out.append(static_cast<char>(0xC0 | c >> 6), static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
        out.append(static_cast<char>(0xE0 | c >> 12), static_cast<char>(0x80 | (c >> 6 & 0x3F)),
                   static_cast<char>(0x80 | (c & 0x3F)));
    } else {
        out.append(static_cast<char>(0xF0 | c >> 18), static_cast<char>(0x80 | (c >> 12 & 0x3F)),
                   static_cast<char>(0x80 | (c >> 6 & 0x3F)), static_cast<char>(0x80 | (c & 0x3F)));
    }
}

} // namespace

String utf16toutf8(unsigned short const* text, unsigned count) {
    String out;
    for (unsigned position = 0; position < count;)
        appendUtf8(out, nextCharacter(text, count, position));
    return out;
}

String utf16tohtml(unsigned short const* text, unsigned count) {
    String out;
    for (unsigned position = 0; position < count;) {
        std::uint32_t const c = nextCharacter(text, count, position);
        bool const plain = c < 0x80 && c != '<' && c != '>' && c != '&' && c != '"' && c != '\'';
        if (plain)
            out.append(static_cast<char>(c));
        else
            out.append("&#", toString(c), ';');
    }
    return out;
}

String toString(unsigned short const* text) {
    unsigned count = 0;
    while (text[count] != 0)
        ++count;
    return utf16toutf8(text, count);
}

String wildcard2regex(String const& pattern) {
    String out("^");
    for (char const c : pattern) {
        if (c == '*')
            out.append(".*");
        else if (c == '?')
            out.append('.');
        else if (c != '\0' && std::strchr("\\^$.|+()[]{}", c))
            out.append('\\', c);
        else
            out.append(c);
    }
    return out.append('$');
}

} // namespace quillon
