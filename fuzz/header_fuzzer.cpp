// Reply headers, as libcurl delivers them: a status line, then the other lines.
#include "base/splitter.h"
#include "fuzz/fuzzer.h"
#include "http/responseheader.h"

using namespace quillon;

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    CharSplitter lines(fuzz::inputOf(data, size), '\n');
    http::ResponseHeader header(lines.next());
    while (lines.valid())
        header.addLine(lines.next());
    header.getVersion();
    header.getSetCookies();
    header.getETag();
    try {
        header.getResponseCode();
    } catch (http::EBadHeader const&) {
    }
    return 0;
}
