#include "xml/stringparser.h"

#include "base/log.h"
#include "xml/comment.h"

namespace quillon::xml {

namespace {

[[noreturn]] void fail(String const& text, int line) {
    log(ERROR, "xml.StringParser", "parse", text);
    throw EXmlStringParser("EXmlStringParser", "libs/xml/stringparser.cpp", line);
}

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
        fail("no tag found: " + cursor.excerpt(), __LINE__);
    if (!cursor.at('<') || cursor.at("<!"))
        fail("bad xml file format: " + cursor.excerpt(), __LINE__);

    std::unique_ptr<Element> root = Element::parse(cursor);
    skipMisc(cursor);
    if (!cursor.atEnd())
        fail("bad xml file format: " + cursor.excerpt(), __LINE__);
    return root;
}

} // namespace quillon::xml
