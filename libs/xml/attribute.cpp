#include "xml/attribute.h"

#include "base/failure.h"
#include "xml/cursor.h"

namespace quillon::xml {

Attribute Attribute::parse(Cursor& cursor) {
    String const name = cursor.readToAnyOf(">/= \r\t\n");
    cursor.skipBlanks();
    if (name.empty() || name.findFirstOf("<&\"'", 0) != String::npos || !cursor.skip('='))
        fail<EXmlAttribute>("xml.Attribute", "parse", "cannot parse attributes");
    cursor.skipBlanks();
    return Attribute(name, AttributeValue::parse(cursor));
}

} // namespace quillon::xml
