#include "xml/parserreader.h"

#include "base/file.h"
#include "base/log.h"
#include "xml/stringparser.h"

namespace quillon::xml {

namespace {

[[noreturn]] void throwParserReader(int line) {
    throw EParserReader("EParserReader", "libs/xml/parserreader.cpp", line);
}

[[noreturn]] void fail(char const* method, String const& text, int line) {
    log(ERROR, "xml.ParserReader", method, text);
    throwParserReader(line);
}

std::unique_ptr<Element> parseDocument(String const& text, Disclosure disclosure) {
    auto document = std::make_unique<Element>();
    try {
        document->append(StringParser::parse(text, disclosure));
        return document;
    } catch (EXmlNode const&) { // both are logged where they were thrown
        throwParserReader(__LINE__);
    } catch (EParser const&) {
        throwParserReader(__LINE__);
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
        fail("operator[]", "no element left: " + excerpt(key), __LINE__);
    return KeyReader::operator[](key);
}

String ParserReader::text() const {
    fail("read", "a document has no value", __LINE__);
}

void ParserReader::refuse() const {
    fail("read", "a document cannot be read like this", __LINE__);
}

} // namespace quillon::xml
