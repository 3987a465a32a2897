// Parses a document in a file.
#pragma once

#include "xml/element.h"

namespace quillon::xml {

/// Any thread.
class FileParser {
public:
    /// The root element of the document, as StringParser::parse() gives it. Throws EXmlFileParser when the
    /// file cannot be read or is not one document, EXmlNode for a fault in it.
    static std::unique_ptr<Element> parse(String const& fileName);
};

} // namespace quillon::xml
