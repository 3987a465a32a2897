// Comments of a document.
#pragma once

#include "xml/node.h"

namespace quillon::xml {

class Cursor;

/// The text between "<!--" and "-->". The parsers skip comments; a document that is built may hold them.
class Comment final : public Node {
public:
    Comment() : Node(Type::comment) {}
    /// Throws EXmlComment as setText() does.
    explicit Comment(String const& text) : Comment() { setText(text); }

    String const& getText() const noexcept { return m_text; }
    /// Throws EXmlComment when `text` would end the comment: it holds "--" or ends in "-".
    void setText(String const& text);

    /// `indent` is not used.
    String toXml(String const& indent) const override;

    /// Moves behind a comment, or a processing instruction, the declaration among them, that begins at
    /// `cursor`; whether there was one. Throws EXmlComment when it does not end.
    static bool skip(Cursor& cursor);

private:
    String m_text;
};

} // namespace quillon::xml
