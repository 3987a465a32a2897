#include "http/uri_encoding.h"

#include "base/ascii.h"
#include "http/uri.h"

#include <string_view>

namespace quillon::http {

namespace {

constexpr unsigned escapeLength = 3;

bool isUnreserved(char c) {
    return ascii::isAlnum(c) || c == '-' || c == '.' || c == '_' || c == '~';
}

// Besides the unreserved characters (RFC 3986, 3.3): the sub-delims, ":", "@" and the separator.
bool isAllowedInPath(char c) {
    return isUnreserved(c) ||
           (c != '\0' && std::string_view("!$&'()*+,;=:@/").find(c) != std::string_view::npos);
}

bool isEscape(String const& text, unsigned at) {
    return text[at] == '%' && at + 2 < text.length() && ascii::hexValue(text[at + 1]) >= 0 &&
           ascii::hexValue(text[at + 2]) >= 0;
}

// `stays(i)` tells whether the byte at `i` is written as it is.
template <class Stays>
String encoded(String const& text, Stays stays) {
    static constexpr char digits[] = "0123456789ABCDEF";
    unsigned escapes = 0;
    for (unsigned i = 0; i < text.length(); ++i)
        escapes += stays(i) ? 0 : 1;
    if (escapes == 0)
        return text.owned();
    String result;
    unsigned const length = text.length() + escapes * (escapeLength - 1);
    char* out = result.reserve(length);
    for (unsigned i = 0; i < text.length(); ++i) {
        if (stays(i)) {
            *out++ = text[i];
            continue;
        }
        auto const byte = static_cast<unsigned char>(text[i]);
        *out++ = '%';
        *out++ = digits[byte >> 4];
        *out++ = digits[byte & 15];
    }
    result.resize(length);
    return result;
}

template <class Allowed>
String encodedComponent(String const& text, Escapes escapes, Allowed allowed) {
    return encoded(text, [&](unsigned i) {
        return allowed(text[i]) || (escapes == Escapes::keep && isEscape(text, i));
    });
}

} // namespace

String encodePath(String const& path, Escapes escapes) {
    return encodedComponent(path, escapes, isAllowedInPath);
}

String encodeFragment(String const& fragment, Escapes escapes) {
    return encodedComponent(fragment, escapes, [](char c) { return c == '?' || isAllowedInPath(c); });
}

String Uri::encode(String const& text) {
    return encoded(text, [&](unsigned i) { return isUnreserved(text[i]); });
}

String Uri::decode(String const& text) {
    if (text.find('%') == String::npos)
        return text.owned();
    String result;
    char* const start = result.reserve(text.length());
    char* out = start;
    for (unsigned i = 0; i < text.length(); ++i) {
        if (isEscape(text, i)) {
            *out++ = static_cast<char>(ascii::hexValue(text[i + 1]) * 16 + ascii::hexValue(text[i + 2]));
            i += escapeLength - 1;
        } else {
            *out++ = text[i];
        }
    }
    result.resize(static_cast<unsigned>(out - start));
    return result;
}

} // namespace quillon::http
