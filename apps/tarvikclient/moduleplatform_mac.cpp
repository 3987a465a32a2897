#include "tarvikclient/moduleplatform.h"

namespace quillon {

String modulePlatform() {
    return "macos-x86_64";
}

} // namespace quillon
