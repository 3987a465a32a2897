#include "xml/parserreader.h"

#include "base/failure.h"
#include "base/file.h"
#include "xml/stringparser.h"

namespace quillon::xml {

namespace {

std::unique_ptr<Element> parseDocument(String const& text, Disclosure disclosure) {
    auto document = std::make_unique<Element>();
    try {
        document->append(StringParser::parse(text, disclosure));
        return document;
    } catch (EXmlNode const&) { // both are logged where they were thrown
        failQuietly<EParserReader>();
    } catch (EParser const&) {
        failQuietly<EParserReader>();
    }
}

} // namespace

ParserReader::ParserReader(String const& fileName, Disclosure disclosure)
    : ParserReader(parseDocument(File::readAllFile(fileName), disclosure)) {}

ParserReader ParserReader::fromText(String const& text, Disclosure disclosure) {
    return ParserReader(parseDocument(text, disclosure));
}

IKeyReader& ParserReader::operator[](String const& key) {
    if (!exists(key))
        fail<EParserReader>("xml.ParserReader", "operator[]", "no element left: " + excerpt(key));
    return KeyReader::operator[](key);
}

String ParserReader::text() const {
    fail<EParserReader>("xml.ParserReader", "read", "a document has no value");
}

void ParserReader::refuse() const {
    fail<EParserReader>("xml.ParserReader", "read", "a document cannot be read like this");
}

} // namespace quillon::xml
