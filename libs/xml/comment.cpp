#include "xml/comment.h"

#include "base/failure.h"
#include "xml/cursor.h"

namespace quillon::xml {

namespace {

bool skipBetween(Cursor& cursor, String const& opening, String const& closing) {
    Cursor const start = cursor;
    if (!cursor.skip(opening))
        return false;
    String skipped;
    if (!cursor.readPast(closing, skipped))
        fail<EXmlComment>("xml.Comment", "skip", "bad xml file format: " + start.excerpt());
    return true;
}

} // namespace

void Comment::setText(String const& text) {
    if (text.find("--") != String::npos || text.ends("-"))
        fail<EXmlComment>("xml.Comment", "setText", "bad xml file format: " + excerpt(text));
    m_text = text.owned();
}

String Comment::toXml(String const&) const {
    return "<!--" + m_text + "-->";
}

bool Comment::skip(Cursor& cursor) {
    return skipBetween(cursor, "<!--", "-->") || skipBetween(cursor, "<?", "?>");
}

} // namespace quillon::xml
