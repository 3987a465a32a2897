// Settings and signature files: what is written of a tree reads as the same tree.
#include "fuzz/fuzzer.h"
#include "xml/exceptions.h"
#include "xml/stringparser.h"

using namespace quillon;

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    try {
        String const once = xml::StringParser::parse(fuzz::inputOf(data, size))->toXml("");
        fuzz::require(xml::StringParser::parse(once)->toXml("") == once);
    } catch (xml::EXmlNode const&) {
    } catch (xml::EParser const&) {
    }
    return 0;
}
