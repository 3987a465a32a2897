// Launch URLs: what goes out is stable when it is parsed again.
#include "http/uri.h"

#include "fuzz/fuzzer.h"

using namespace quillon;

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    try {
        http::Uri uri = http::Uri::parse(fuzz::inputOf(data, size), true);
        uri.setScheme("https");
        String const once = uri.getFullUri();
        fuzz::require(http::Uri::parse(once, true).getFullUri() == once);
    } catch (http::UriComponentException const&) {
    }
    return 0;
}
