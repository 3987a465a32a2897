#include "xml/fileparser.h"

#include "base/failure.h"
#include "base/file.h"
#include "xml/stringparser.h"

namespace quillon::xml {

std::unique_ptr<Element> FileParser::parse(String const& fileName) {
    try {
        return StringParser::parse(File::readAllFile(fileName));
    } catch (EFile const&) {
        fail<EXmlFileParser>("xml.FileParser", "parse", "cannot read the file: " + fileName);
    } catch (EXmlStringParser const&) { // logged where it was thrown
        failQuietly<EXmlFileParser>();
    }
}

} // namespace quillon::xml
