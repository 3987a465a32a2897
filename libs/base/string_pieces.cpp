// Pieces of a string and new strings made from one.
#include "base/string.h"

#include "base/ascii.h"
#include "base/assertion.h"
#include "base/base64.h"
#include "base/strings.h"

#include <algorithm>

namespace quillon {

String String::range(unsigned from, unsigned count) const noexcept {
    if (from >= m_length)
        return String();
    String piece(*this);
    piece.m_string += from;
    piece.m_length = std::min(count, m_length - from);
    return piece;
}

String String::left(char c, bool nullIfMissing) const noexcept {
    unsigned const p = find(c);
    if (p == npos)
        return nullIfMissing ? String() : *this;
    return range(0, p);
}

String String::right(char c, bool nullIfMissing) const noexcept {
    unsigned const p = find(c);
    if (p == npos)
        return nullIfMissing ? String() : *this;
    return range(p + 1);
}

String String::rleft(char c) const noexcept {
    unsigned const p = rfind(c);
    return p == npos ? *this : range(0, p);
}

String String::rright(char c) const noexcept {
    unsigned const p = rfind(c);
    return p == npos ? *this : range(p + 1);
}

String String::trim() const noexcept {
    unsigned const first = searchNoSpace();
    if (first == npos)
        return String();
    unsigned last = m_length;
    while (ascii::isWhite(m_string[last - 1]))
        --last;
    return range(first, last - first);
}

String String::trimLeft(char c) const noexcept {
    unsigned first = 0;
    while (first < m_length && m_string[first] == c)
        ++first;
    return range(first);
}

String String::trimRight(char c) const noexcept {
    unsigned last = m_length;
    while (last > 0 && m_string[last - 1] == c)
        --last;
    return range(0, last);
}

namespace {

template <class Convert>
String converted(String const& text, Convert convert) {
    char const* const changed =
        std::find_if(text.begin(), text.end(), [&](char c) { return convert(c) != c; });
    if (changed == text.end())
        return text;
    String result;
    char* const out = result.reserve(text.length());
    std::transform(changed, text.end(), std::copy(text.begin(), changed, out), convert);
    result.resize(text.length());
    return result;
}

template <class Find>
String replaced(String const& text, String const& what, String const& with, Find find) {
    QUILLON_ASSERT(!what.empty(), "the text to replace is not empty");
    String result;
    unsigned position = 0;
    for (unsigned hit; (hit = find(position)) != String::npos; position = hit + what.length()) {
        result.append(text.array() + position, hit - position);
        result.append(with.array(), with.length());
    }
    return position == 0 ? text : result.append(text.array() + position, text.length() - position);
}

} // namespace

String String::upper() const {
    return converted(*this, ascii::upper);
}

String String::lower() const {
    return converted(*this, ascii::lower);
}

String String::replace(char what, char with) const {
    return converted(*this, [=](char c) { return c == what ? with : c; });
}

String String::replace(String const& what, String const& with) const {
    return replaced(*this, what, with, [&](unsigned from) { return find(what, from); });
}

String String::replaceNoCase2(String const& what, String const& with) const {
    return replaced(*this, what, with, [&](unsigned from) { return findNoCase2(what, from); });
}

String String::replaceBetween(unsigned from, unsigned to, String const& with) const {
    from = std::min(from, m_length);
    to = std::clamp(to, from, m_length);
    String result;
    return result.append(range(0, from), with, range(to));
}

String String::remove(char c) const {
    if (find(c) == npos)
        return *this;
    String result;
    char* const out = result.reserve(m_length);
    result.resize(static_cast<unsigned>(std::remove_copy(begin(), end(), out, c) - out));
    return result;
}

String String::sort() const {
    String result = clone();
    std::sort(result.m_string, result.m_string + result.m_length,
              [](char a, char b) { return static_cast<unsigned char>(a) < static_cast<unsigned char>(b); });
    return result;
}

String String::glue(Strings const& list) const {
    StringAddition addition;
    bool first = true;
    for (String const& item : list) {
        if (!first)
            addition = addition + *this;
        addition = addition + item;
        first = false;
    }
    return addition.toString();
}

String String::mimencode() const {
    return Base64::encode(*this);
}

} // namespace quillon
