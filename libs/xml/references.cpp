#include "xml/references.h"

#include "base/ascii.h"
#include "base/stringconversion.h"

#include <algorithm>

namespace quillon::xml {

namespace {

struct Entity {
    std::string_view name;
    char character;
};

constexpr Entity predefined[] = {
    {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};

constexpr unsigned beyondUnicode = 0x110000;

bool isCharacter(unsigned code) noexcept {
    return code != 0 && code < beyondUnicode && (code < 0xD800 || code > 0xDFFF);
}

void appendUtf8(String& out, unsigned code) {
    unsigned short units[2] = {static_cast<unsigned short>(code)};
    unsigned count = 1;
    if (code > 0xFFFF) {
        units[0] = static_cast<unsigned short>(0xD800 + ((code - 0x10000) >> 10));
        units[1] = static_cast<unsigned short>(0xDC00 + (code & 0x3FF));
        count = 2;
    }
    String const character = utf16toutf8(units, count);
    out.append(character.array(), character.length());
}

// Both decoders append what the reference at `at` stands for and return its length, 0 when it is none.

unsigned decodeNumeric(String const& raw, unsigned at, String& out) {
    unsigned position = at + 2;
    unsigned base = 10;
    if (position < raw.length() && raw[position] == 'x') {
        base = 16;
        ++position;
    }
    unsigned const digits = position;
    unsigned code = 0;
    for (; position < raw.length(); ++position) {
        int const digit = ascii::hexValue(raw[position]);
        if (digit < 0 || static_cast<unsigned>(digit) >= base)
            break;
        code = std::min(code * base + static_cast<unsigned>(digit), beyondUnicode);
    }
    if (position == digits || position == raw.length() || raw[position] != ';' || !isCharacter(code))
        return 0;
    appendUtf8(out, code);
    return position + 1 - at;
}

unsigned decodeReference(String const& raw, unsigned at, String& out) {
    if (at + 1 < raw.length() && raw[at + 1] == '#')
        return decodeNumeric(raw, at, out);
    std::string_view const rest = raw.view().substr(at);
    for (Entity const& entity : predefined) {
        if (rest.starts_with(entity.name)) {
            out.append(entity.character);
            return static_cast<unsigned>(entity.name.size());
        }
    }
    return 0;
}

} // namespace

String decodeReferences(String const& raw) {
    unsigned next = raw.find('&');
    if (next == String::npos)
        return raw;
    String text;
    text.reserve(raw.length()); // no reference is shorter than its character
    unsigned done = 0;
    for (; next != String::npos; next = raw.find('&', std::max(done, next + 1))) {
        text.append(raw.array() + done, next - done);
        done = next + decodeReference(raw, next, text);
    }
    return text.append(raw.array() + done, raw.length() - done);
}

void appendEscaped(String& out, String const& text, char quote) {
    char special[] = "&<\0";
    special[2] = quote;
    unsigned done = 0;
    for (unsigned next; (next = text.findFirstOf(special, done)) != String::npos; done = next + 1) {
        out.append(text.array() + done, next - done);
        char const c = text[next];
        out.append(c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '"' ? "&quot;" : "&#39;");
    }
    out.append(text.array() + done, text.length() - done);
}

} // namespace quillon::xml
