// What reading, writing and building XML documents can throw.
#pragma once

#include "base/reader.h"

namespace quillon::xml {

/// A key that is absent from a document, or whose value cannot be read as what is wanted.
class EKeyReader : public quillon::EKeyReader {
    using quillon::EKeyReader::EKeyReader;
};

/// A document that does not parse, or that is read as if it were one of its elements.
class EParserReader : public EKeyReader {
    using EKeyReader::EKeyReader;
};

/// A file or text that does not hold the document that is wanted.
class EParser : public Exception {
    using Exception::Exception;
};

/// The file that was to be parsed: it cannot be read, or what it holds is not one document.
class EXmlFileParser : public EParser {
    using EParser::EParser;
};

/// The text that was to be parsed is not one document.
class EXmlStringParser : public EParser {
    using EParser::EParser;
};

/// A fault in one part of a document; the subclass says in which.
class EXmlNode : public Exception {
    using Exception::Exception;
};

class EXmlElement : public EXmlNode {
    using EXmlNode::EXmlNode;
};

class EXmlComment : public EXmlNode {
    using EXmlNode::EXmlNode;
};

class EXmlAttribute : public EXmlNode {
    using EXmlNode::EXmlNode;
};

class EXmlAttributeValue : public EXmlAttribute {
    using EXmlAttribute::EXmlAttribute;
};

/// An element was asked for an attribute that it does not have.
class EXmlNoAttribute : public EXmlAttribute {
    using EXmlAttribute::EXmlAttribute;
};

} // namespace quillon::xml
