#include "base/datetime.h"

namespace quillon {

String DateTime::toString() const {
    std::tm utc{};
    gmtime_r(&m_seconds, &utc);
    char text[32];
    std::size_t const length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return String::copyOf({text, length});
}

} // namespace quillon
