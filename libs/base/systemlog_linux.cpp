#include "base/systemlog.h"

#include <syslog.h>

namespace quillon::native {

void systemLog(LogCategory category, char const* text) noexcept {
    static constexpr int priorities[] = {LOG_INFO, LOG_DEBUG, LOG_ERR, LOG_CRIT};
    syslog(LOG_USER | priorities[category], "%s", text);
}

} // namespace quillon::native
