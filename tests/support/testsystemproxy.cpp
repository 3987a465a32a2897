// The desktop of a test program names one proxy, whoever asks.
#include "tarvikclient/systemproxy.h"

namespace quillon {

Strings native::systemProxies(String const&, std::function<bool()> const&, std::chrono::milliseconds) {
    return {"socks://127.0.0.1:9", "direct://"};
}

} // namespace quillon
