// Successive pieces of a string between separators.
#pragma once

#include "base/string.h"

namespace quillon {

/// The pieces between separators; n separators make n + 1 pieces, some perhaps empty, and an empty text makes
/// one empty piece. Pieces share the text's block. Linear over the whole text.
///
///     for (CharSplitter pieces("a&b", '&'); pieces.valid();) use(pieces.next());
template <class Find>
class Splitter {
public:
    /// Whether next() has another piece to give.
    bool valid() const noexcept { return m_position != String::npos; }

    /// The next piece; the empty string when there is none.
    String next() noexcept {
        if (!valid())
            return String();
        unsigned const start = m_position;
        unsigned const hit = m_find(m_text, start);
        m_position = hit == String::npos ? String::npos : hit + 1;
        return m_text.range(start, hit == String::npos ? String::npos : hit - start);
    }

    /// Starts again at the first piece.
    void rewind() noexcept { m_position = 0; }

    /// The number of pieces of the whole text.
    unsigned length() const noexcept {
        unsigned pieces = 1;
        for (unsigned hit = m_find(m_text, 0); hit != String::npos; hit = m_find(m_text, hit + 1))
            ++pieces;
        return pieces;
    }

protected:
    Splitter(String const& text, Find const& find) : m_text(text), m_find(find) {}

private:
    String m_text;
    Find m_find;
    unsigned m_position = 0;
};

namespace detail {
struct FindChar {
    char separator;
    unsigned operator()(String const& text, unsigned from) const noexcept {
        return text.find(separator, from);
    }
};
struct FindAnyOf {
    String set;
    unsigned operator()(String const& text, unsigned from) const noexcept {
        std::size_t const hit = text.view().find_first_of(set.view(), from);
        return hit == std::string_view::npos ? String::npos : static_cast<unsigned>(hit);
    }
};
} // namespace detail

/// Splits at one character.
class CharSplitter : public Splitter<detail::FindChar> {
public:
    CharSplitter(String const& text, char separator) : Splitter(text, detail::FindChar{separator}) {}
};

/// Splits at any character of a set.
class FirstOfSplitter : public Splitter<detail::FindAnyOf> {
public:
    FirstOfSplitter(String const& text, String const& set) : Splitter(text, detail::FindAnyOf{set}) {}
};

} // namespace quillon
