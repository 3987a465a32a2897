// A position in the text of a document that is being parsed.
#pragma once

#include "base/string.h"

namespace quillon::xml {

/// The beginning of `text` for a log line: at most 40 bytes, control characters replaced, so that a document
/// from the network can neither flood the log nor forge lines in it.
String excerpt(String const& text);

/// What log lines may say of a document that does not parse.
enum class Disclosure {
    excerpts, ///< the offending text
    lines     ///< its line's number, for documents that hold secrets
};

/// Walks over a document. The pieces that it gives share the document's block.
class Cursor {
public:
    /// Copies the bytes when nobody owns them.
    explicit Cursor(String const& document, Disclosure disclosure = Disclosure::excerpts)
        : m_text(document.owned()), m_disclosure(disclosure) {}

    bool atEnd() const noexcept { return m_position == m_text.length(); }
    bool at(char c) const noexcept { return !atEnd() && m_text[m_position] == c; }
    bool at(String const& token) const noexcept { return m_text.starts(token, m_position); }

    /// Moves behind `token` when it stands here; whether it did.
    bool skip(String const& token) noexcept;
    /// Moves behind white space; whether there was any.
    bool skipBlanks() noexcept;

    /// What stands before the next of the delimiters, or before the end, and moves there.
    String readTo(char delimiter) noexcept;
    String readToAnyOf(char const* delimiters) noexcept;
    /// What stands before the next `token`, and moves behind it. False, without moving, when there is none.
    bool readPast(String const& token, String& piece) noexcept;

    /// What stands here, for a log line.
    String excerpt() const { return excerpt(m_text.range(m_position)); }
    /// A piece of the document that stands before this place, for a log line.
    String excerpt(String const& piece) const;

private:
    String readUpTo(unsigned end) noexcept;

    String m_text;
    Disclosure m_disclosure;
    unsigned m_position = 0;
};

} // namespace quillon::xml
