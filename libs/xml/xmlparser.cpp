#include "xml/xmlparser.h"

#include "base/failure.h"
#include "base/file.h"
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

// At TRACE: a settings file that is not there yet, or is somebody else's, is no error of this program.
[[noreturn]] void failRead(String const& text, Place place = std::source_location::current()) {
    log(TRACE, "xml.Parser", "read", text);
    failQuietly<EParser>(place);
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
        traceCaught(e);
        return false;
    }
    return file.close();
}

void Parser::read(String const& fileName, String const& rootName, ISerialize& record) {
    if (!File::exists(fileName))
        failQuietly<EParser>();
    std::unique_ptr<Element> const root = rootOf(fileName);
    if (!root)
        failRead("cannot parse the file: " + fileName);
    if (!root->getName().equalsNoCase2(rootName))
        failRead("cannot find the document: " + rootName);
    KeyReader reader(*root);
    record.write(static_cast<IKeyReader&>(reader));
}

} // namespace quillon::xml
