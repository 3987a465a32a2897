#include "tarvikclient/systemproxy.h"

namespace quillon::native {

Strings systemProxies(String const&, std::function<bool()> const&, std::chrono::milliseconds) {
    return {};
}

} // namespace quillon::native
