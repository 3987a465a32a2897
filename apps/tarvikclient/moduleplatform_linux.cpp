#include "tarvikclient/moduleplatform.h"

namespace quillon {

String modulePlatform() {
    return "linux-x86_64";
}

} // namespace quillon
