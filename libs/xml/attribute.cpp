#include "xml/attribute.h"

#include "base/log.h"
#include "xml/cursor.h"

namespace quillon::xml {

Attribute Attribute::parse(Cursor& cursor) {
    String const name = cursor.readToAnyOf(">/= \r\t\n");
    cursor.skipBlanks();
    if (name.empty() || name.findFirstOf("<&\"'", 0) != String::npos || !cursor.skip('=')) {
        log(ERROR, "xml.Attribute", "parse", "cannot parse attributes");
        throw EXmlAttribute("EXmlAttribute", "libs/xml/attribute.cpp", __LINE__);
    }
    cursor.skipBlanks();
    return Attribute(name, AttributeValue::parse(cursor));
}

} // namespace quillon::xml
