#include "xml/stringparser.h"

#include "base/failure.h"
#include "xml/comment.h"

namespace quillon::xml {

namespace {

void skipMisc(Cursor& cursor) {
    do
        cursor.skipBlanks();
    while (Comment::skip(cursor));
}

} // namespace

std::unique_ptr<Element> StringParser::parse(String const& text, Disclosure disclosure) {
    Cursor cursor(text, disclosure);
    cursor.skip("\xEF\xBB\xBF"); // a byte order mark
    skipMisc(cursor);
    if (cursor.atEnd())
        fail<EXmlStringParser>("xml.StringParser", "parse", "no tag found: " + cursor.excerpt());
    if (!cursor.at('<') || cursor.at("<!"))
        fail<EXmlStringParser>("xml.StringParser", "parse", "bad xml file format: " + cursor.excerpt());

    std::unique_ptr<Element> root = Element::parse(cursor);
    skipMisc(cursor);
    if (!cursor.atEnd())
        fail<EXmlStringParser>("xml.StringParser", "parse", "bad xml file format: " + cursor.excerpt());
    return root;
}

} // namespace quillon::xml
