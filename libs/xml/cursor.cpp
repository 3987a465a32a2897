#include "xml/cursor.h"

#include "base/stringconversion.h"

#include <algorithm>

namespace quillon::xml {

namespace {

bool isBlank(char c) noexcept {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool isControl(char c) noexcept {
    return static_cast<unsigned char>(c) < ' ' || c == '\x7f';
}

} // namespace

String excerpt(String const& text) {
    constexpr unsigned maxLength = 40;
    String shown = text.range(0, maxLength).clone();
    for (unsigned i = 0; i < shown.length(); ++i)
        if (isControl(shown[i]))
            shown.setAt(i, ' ');
    return shown;
}

String Cursor::excerpt(String const& piece) const {
    if (m_disclosure == Disclosure::excerpts)
        return xml::excerpt(piece);
    auto const lineBreaks = std::count(m_text.begin(), m_text.begin() + m_position, '\n');
    return "line " + toString(static_cast<unsigned>(lineBreaks) + 1);
}

bool Cursor::skip(String const& token) noexcept {
    if (!at(token))
        return false;
    m_position += token.length();
    return true;
}

bool Cursor::skipBlanks() noexcept {
    unsigned const start = m_position;
    while (!atEnd() && isBlank(m_text[m_position]))
        ++m_position;
    return m_position != start;
}

String Cursor::readTo(char delimiter) noexcept {
    return readUpTo(m_text.find(delimiter, m_position));
}

String Cursor::readToAnyOf(char const* delimiters) noexcept {
    return readUpTo(m_text.findFirstOf(delimiters, m_position));
}

bool Cursor::readPast(String const& token, String& piece) noexcept {
    // Goes from one last character of the token to the next: a memmem() over all that is left of the document
    // is fast by itself, but the sanitizers check the whole range for every call.
    unsigned const length = token.length();
    unsigned last = m_position + length - 1;
    while ((last = m_text.find(token[length - 1], last)) != String::npos) {
        unsigned const start = last + 1 - length;
        if (m_text.starts(token, start)) {
            piece = readUpTo(start);
            m_position += length;
            return true;
        }
        ++last;
    }
    return false;
}

String Cursor::readUpTo(unsigned end) noexcept {
    end = std::min(end, m_text.length());
    String piece = m_text.range(m_position, end - m_position);
    m_position = end;
    return piece;
}

} // namespace quillon::xml
