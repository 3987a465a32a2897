#include "base/searchpattern.h"

#include "base/ascii.h"

namespace quillon {

SearchPattern::SearchPattern(String const& pattern, Case letters)
    : m_pattern(letters == Case::ignored ? pattern.lower().clone() : pattern.clone()), m_case(letters) {
    m_shift.fill(m_pattern.length());
    for (unsigned i = 0; i + 1 < m_pattern.length(); ++i)
        m_shift[static_cast<unsigned char>(m_pattern[i])] = m_pattern.length() - 1 - i;
}

char SearchPattern::fold(char c) const noexcept {
    return m_case == Case::ignored ? ascii::lower(c) : c;
}

unsigned SearchPattern::findIn(String const& text, unsigned from) const noexcept {
    unsigned const length = m_pattern.length();
    if (from > text.length())
        return String::npos;
    if (length == 0)
        return from;
    for (std::size_t p = from; p + length <= text.length();) {
        unsigned i = length;
        while (i > 0 && fold(text.array()[p + i - 1]) == m_pattern[i - 1])
            --i;
        if (i == 0)
            return static_cast<unsigned>(p);
        p += m_shift[static_cast<unsigned char>(fold(text.array()[p + length - 1]))];
    }
    return String::npos;
}

} // namespace quillon
