// What replies do to the session's cookies, beside libcurl alone. The input chooses hosts, paths and
// "Set-Cookie" lines.
#include "fuzz/fuzzer.h"
#include "tests/curl/cookiecomparison.h"

#include <cstdio>
#include <cstdlib>

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const difference = quillon::test::compareCookies({reinterpret_cast<char const*>(data), size});
    if (difference.empty())
        return 0;
    std::fprintf(stderr, "%s\n", difference.c_str());
    std::abort();
}
