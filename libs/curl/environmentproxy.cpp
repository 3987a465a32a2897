#include "curl/environmentproxy.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>

namespace quillon {

namespace {

bool isAnySet(std::initializer_list<char const*> names) {
    return std::any_of(names.begin(), names.end(), [](char const* name) {
        char const* const value = std::getenv(name);
        return value && *value;
    });
}

} // namespace

bool environmentNamesProxy(String const& scheme) {
    // HTTP_PROXY is what a request's header "Proxy" becomes in a CGI program: nobody goes by it.
    bool const own = scheme == "https" ? isAnySet({"https_proxy", "HTTPS_PROXY"}) : isAnySet({"http_proxy"});
    return own || isAnySet({"all_proxy", "ALL_PROXY"});
}

} // namespace quillon
