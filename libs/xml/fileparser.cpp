#include "xml/fileparser.h"

#include "base/file.h"
#include "base/log.h"
#include "xml/stringparser.h"

namespace quillon::xml {

namespace {

[[noreturn]] void fail(int line) {
    throw EXmlFileParser("EXmlFileParser", "libs/xml/fileparser.cpp", line);
}

} // namespace

std::unique_ptr<Element> FileParser::parse(String const& fileName) {
    try {
        return StringParser::parse(File::readAllFile(fileName));
    } catch (EFile const&) {
        log(ERROR, "xml.FileParser", "parse", "cannot read the file: " + fileName);
        fail(__LINE__);
    } catch (EXmlStringParser const&) { // logged where it was thrown
        fail(__LINE__);
    }
}

} // namespace quillon::xml
