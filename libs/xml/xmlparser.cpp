#include "xml/xmlparser.h"

#include "base/file.h"
#include "base/log.h"
#include "xml/fileparser.h"
#include "xml/keyreader.h"
#include "xml/writerkeywriter.h"

namespace quillon::xml {

namespace {

/// Null when the file does not parse; the reason has been logged.
std::unique_ptr<Element> rootOf(String const& fileName) {
    try {
        return FileParser::parse(fileName);
    } catch (EXmlNode const&) {
        return nullptr;
    } catch (EParser const&) {
        return nullptr;
    }
}

[[noreturn]] void failRead(String const& text, int line) {
    log(TRACE, "xml.Parser", "read", text);
    throw EParser("EParser", "libs/xml/xmlparser.cpp", line);
}

} // namespace

bool Parser::write(String const& fileName, String const& rootName, ISerialize const& record) {
    File file;
    file.open(fileName, File::out); // not open, it refuses the first write
    try {
        WriterKeyWriter writer(file);
        writer[rootName].write(record);
        writer.clear();
    } catch (Exception const& e) {
        log(TRACE, "Exception", "catch", e.trace("libs/xml/xmlparser.cpp", __LINE__));
        return false;
    }
    return file.close();
}

void Parser::read(String const& fileName, String const& rootName, ISerialize& record) {
    if (!File::exists(fileName))
        throw EParser("EParser", "libs/xml/xmlparser.cpp", __LINE__);
    std::unique_ptr<Element> const root = rootOf(fileName);
    if (!root)
        failRead("cannot parse the file: " + fileName, __LINE__);
    if (!root->getName().equalsNoCase2(rootName))
        failRead("cannot find the document: " + rootName, __LINE__);
    KeyReader reader(*root);
    record.write(static_cast<IKeyReader&>(reader));
}

} // namespace quillon::xml
