#include "xml/comment.h"

#include "base/log.h"
#include "xml/cursor.h"

namespace quillon::xml {

namespace {

[[noreturn]] void fail(char const* method, String const& offending, int line) {
    log(ERROR, "xml.Comment", method, "bad xml file format: " + offending);
    throw EXmlComment("EXmlComment", "libs/xml/comment.cpp", line);
}

bool skipBetween(Cursor& cursor, String const& opening, String const& closing) {
    Cursor const start = cursor;
    if (!cursor.skip(opening))
        return false;
    String skipped;
    if (!cursor.readPast(closing, skipped))
        fail("skip", start.excerpt(), __LINE__);
    return true;
}

} // namespace

void Comment::setText(String const& text) {
    if (text.find("--") != String::npos || text.ends("-"))
        fail("setText", excerpt(text), __LINE__);
    m_text = text.owned();
}

String Comment::toXml(String const&) const {
    return "<!--" + m_text + "-->";
}

bool Comment::skip(Cursor& cursor) {
    return skipBetween(cursor, "<!--", "-->") || skipBetween(cursor, "<?", "?>");
}

} // namespace quillon::xml
