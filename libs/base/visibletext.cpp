#include "base/visibletext.h"

#include <cstdio>

namespace quillon {

namespace {

/// One UTF-8 sequence, or one byte that begins none.
struct Character {
    char32_t code;
    unsigned length;
    bool isUtf8 = true;
};

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// The length that the first byte of a sequence promises; 0 for a byte that begins none.
unsigned promisedLength(unsigned char lead) {
    if (lead < 0xC2 || lead > 0xF4)
        return 0;
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

// The shortest form alone, and no surrogates (RFC 3629): terminals differ in what they make of the others.
bool isPermitted(char32_t code, unsigned length) {
    static constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    return code >= least[length] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

Character characterAt(std::string_view text) {
    auto const lead = static_cast<unsigned char>(text[0]);
    Character const byte{lead, 1, lead < 0x80};
    unsigned const length = lead < 0x80 ? 0 : promisedLength(lead);
    if (length == 0 || length > text.size())
        return byte;
    char32_t code = lead & (0x7Fu >> length);
    for (unsigned i = 1; i < length; ++i) {
        if (!isContinuation(text[i]))
            return byte;
        code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
    }
    return isPermitted(code, length) ? Character{code, length} : byte;
}

bool isObeyed(Character const& c) {
    if (c.code < 0xA0)
        return (c.code < 0x20 && c.code != '\t') || c.code >= 0x7F;
    return c.isUtf8 && (c.code == 0x61C || c.code == 0x200E || c.code == 0x200F ||
                        (c.code >= 0x2028 && c.code <= 0x202E) || (c.code >= 0x2066 && c.code <= 0x2069));
}

void appendVisible(String& out, Character const& c) {
    char form[12];
    if (c.code == '\n' || c.code == '\r')
        std::snprintf(form, sizeof form, "\\%c", c.code == '\n' ? 'n' : 'r');
    else
        std::snprintf(form, sizeof form, c.isUtf8 && c.code >= 0x80 ? "\\u%04x" : "\\x%02x",
                      static_cast<unsigned>(c.code));
    out.append(form);
}

} // namespace

String visibleText(String const& text) {
    String out;
    unsigned taken = 0; // of the text
    for (unsigned at = 0, length = 1; at < text.length(); at += std::exchange(length, 1)) {
        if (text[at] >= ' ' && text[at] < '\x7F') // most texts have nothing else
            continue;
        Character const c = characterAt(text.view().substr(at));
        length = c.length;
        if (!isObeyed(c))
            continue;
        out.append(text.array() + taken, at - taken);
        appendVisible(out, c);
        taken = at + length;
    }
    return taken == 0 ? text : out.append(text.array() + taken, text.length() - taken);
}

String cutText(String const& text, unsigned most) {
    if (text.length() <= most)
        return text;
    unsigned end = most;
    for (unsigned back = 0; back < 3 && end > 0 && isContinuation(text[end]); ++back)
        --end;
    return String::copyOf(text.view().substr(0, end)).append(" [...]");
}

} // namespace quillon
