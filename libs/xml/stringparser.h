// Parses a document that is in memory.
#pragma once

#include "xml/cursor.h"
#include "xml/element.h"

namespace quillon::xml {

/// Any thread.
class StringParser {
public:
    /// The root element of a document: one element, with a declaration, comments, processing instructions and
    /// white space around it. A document type is refused, so nothing is ever fetched or expanded. The tree
    /// shares the text's bytes. Throws EXmlStringParser when the text is not one document, EXmlNode for a
    /// fault in it.
    static std::unique_ptr<Element> parse(String const& text, Disclosure disclosure = Disclosure::excerpts);
};

} // namespace quillon::xml
