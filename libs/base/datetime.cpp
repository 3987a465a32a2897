#include "base/datetime.h"

#include "base/stringconversion.h"

namespace quillon {

namespace {

constexpr unsigned textLength = 20;

} // namespace

std::optional<DateTime> DateTime::parse(String const& text) {
    std::tm utc{};
    String const copy = text.clone();
    if (!strptime(copy.str(), "%Y-%m-%dT%H:%M:%SZ", &utc))
        return std::nullopt;
    // What the C library is lenient about, such as the 31st of June or a missing digit, does not come back; a
    // year of fewer digits would.
    DateTime const read(timegm(&utc));
    return text.length() == textLength && read.toString() == text ? std::optional(read) : std::nullopt;
}

String DateTime::toString() const {
    std::tm utc{};
    gmtime_r(&m_seconds, &utc);
    char text[32];
    std::size_t const length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return String::copyOf({text, length});
}

} // namespace quillon
