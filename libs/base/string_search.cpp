// Comparison and search.
#include "base/string.h"

#include "base/ascii.h"
#include "base/searchpattern.h"

#include <algorithm>

namespace quillon {

namespace {

bool equalNoCase(char const* a, char const* b, unsigned length) noexcept {
    for (unsigned i = 0; i < length; ++i)
        if (ascii::lower(a[i]) != ascii::lower(b[i]))
            return false;
    return true;
}

} // namespace

bool String::equalsNoCase2(String const& other) const noexcept {
    return m_length == other.m_length && equalNoCase(m_string, other.m_string, m_length);
}

bool String::starts(String const& prefix, unsigned from) const noexcept {
    return from <= m_length && range(from, prefix.m_length).equals(prefix);
}

bool String::startsNoCase2(String const& prefix, unsigned from) const noexcept {
    return from <= m_length && range(from, prefix.m_length).equalsNoCase2(prefix);
}

bool String::ends(String const& suffix, unsigned from) const noexcept {
    return from <= m_length && suffix.m_length <= m_length - from &&
           range(m_length - suffix.m_length).equals(suffix);
}

bool String::endsNoCase2(String const& suffix, unsigned from) const noexcept {
    return from <= m_length && suffix.m_length <= m_length - from &&
           range(m_length - suffix.m_length).equalsNoCase2(suffix);
}

unsigned String::find(char c, unsigned from) const noexcept {
    if (from >= m_length)
        return npos;
    void const* const hit = std::memchr(m_string + from, c, m_length - from);
    return hit ? static_cast<unsigned>(static_cast<char const*>(hit) - m_string) : npos;
}

unsigned String::find(String const& pattern, unsigned from) const noexcept {
    return find(pattern.m_string, pattern.m_length, from, m_length);
}

unsigned String::find(String const& pattern, unsigned from, unsigned to) const noexcept {
    return find(pattern.m_string, pattern.m_length, from, to);
}

unsigned String::find(char const* pattern, unsigned from) const noexcept {
    return find(pattern, static_cast<unsigned>(std::strlen(pattern)), from, m_length);
}

unsigned String::find(char const* pattern, unsigned length, unsigned from, unsigned to) const noexcept {
    to = std::min(to, m_length);
    if (from > to || length > to - from)
        return npos;
    if (length == 0)
        return from;
    void const* const hit = memmem(m_string + from, to - from, pattern, length);
    return hit ? static_cast<unsigned>(static_cast<char const*>(hit) - m_string) : npos;
}

unsigned String::findNoCase2(char c, unsigned from) const noexcept {
    return findNoCase2(&c, 1, from, m_length);
}

unsigned String::findNoCase2(String const& pattern, unsigned from) const noexcept {
    return findNoCase2(pattern.m_string, pattern.m_length, from, m_length);
}

unsigned String::findNoCase2(String const& pattern, unsigned from, unsigned to) const noexcept {
    return findNoCase2(pattern.m_string, pattern.m_length, from, to);
}

unsigned String::findNoCase2(char const* pattern, unsigned from) const noexcept {
    return findNoCase2(pattern, static_cast<unsigned>(std::strlen(pattern)), from, m_length);
}

unsigned String::findNoCase2(char const* pattern, unsigned length, unsigned from,
                             unsigned to) const noexcept {
    to = std::min(to, m_length);
    if (from > to || length > to - from)
        return npos;
    for (unsigned p = from; p <= to - length; ++p)
        if (equalNoCase(m_string + p, pattern, length))
            return p;
    return npos;
}

unsigned String::rfind(char c, unsigned from) const noexcept {
    if (m_length == 0)
        return npos;
    for (unsigned p = std::min(from, m_length - 1) + 1; p-- > 0;)
        if (m_string[p] == c)
            return p;
    return npos;
}

unsigned String::rfind(String const& pattern) const noexcept {
    std::size_t const hit = view().rfind(pattern.view());
    return hit == std::string_view::npos ? npos : static_cast<unsigned>(hit);
}

unsigned String::findFirstOf(char const* set, unsigned from, unsigned to) const noexcept {
    std::size_t const hit = view().substr(0, to).find_first_of(set, from);
    return hit == std::string_view::npos ? npos : static_cast<unsigned>(hit);
}

unsigned String::searchSpace(unsigned from, unsigned to) const noexcept {
    for (unsigned p = from, end = std::min(to, m_length); p < end; ++p)
        if (ascii::isWhite(m_string[p]))
            return p;
    return npos;
}

unsigned String::searchNoSpace(unsigned from, unsigned to) const noexcept {
    for (unsigned p = from, end = std::min(to, m_length); p < end; ++p)
        if (!ascii::isWhite(m_string[p]))
            return p;
    return npos;
}

unsigned String::search(SearchPattern const* pattern, unsigned from) const noexcept {
    return pattern->findIn(*this, from);
}

unsigned String::searchNoCase2(SearchPattern const* pattern, unsigned from) const noexcept {
    return pattern->findIn(*this, from);
}

} // namespace quillon
