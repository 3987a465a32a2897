#include "xml/attributevalue.h"

#include "base/failure.h"
#include "xml/cursor.h"
#include "xml/references.h"

namespace quillon::xml {

namespace {

constexpr char character(AttributeValue::Quote quote) {
    return quote == AttributeValue::Quote::simpleQuote ? '\'' : '"';
}

} // namespace

AttributeValue AttributeValue::parse(Cursor& cursor) {
    if (!cursor.at('"') && !cursor.at('\''))
        fail<EXmlAttributeValue>("xml.AttributeValue", "parse",
                                 "invalid attribute value (missing value with =)");
    Quote const quote = cursor.at('"') ? Quote::doubleQuote : Quote::simpleQuote;
    Cursor const start = cursor;
    String raw;
    cursor.skip(character(quote));
    if (!cursor.readPast(character(quote), raw) || raw.find('<') != String::npos)
        fail<EXmlAttributeValue>("xml.AttributeValue", "parse", "bad xml file format: " + start.excerpt());
    return AttributeValue(decodeReferences(raw), quote);
}

String AttributeValue::toXml() const {
    char const quote = character(m_quote);
    String out;
    out.append(quote);
    appendEscaped(out, m_value, quote);
    return out.append(quote);
}

} // namespace quillon::xml
