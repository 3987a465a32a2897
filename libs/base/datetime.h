// A moment in time.
#pragma once

#include "base/string.h"

#include <ctime>
#include <optional>

namespace quillon {

/// A moment with the resolution of one second. A value.
class DateTime {
public:
    /// Now.
    DateTime() : m_seconds(std::time(nullptr)) {}
    /// Seconds since 1970-01-01 00:00:00 UTC.
    explicit DateTime(std::time_t seconds) : m_seconds(seconds) {}
    /// Reads what toString() gives, and no other text.
    static std::optional<DateTime> parse(String const& text);

    std::time_t seconds() const noexcept { return m_seconds; }
    /// UTC, in the form of RFC 3339: "2024-02-29T12:00:00Z".
    String toString() const;

    auto operator<=>(DateTime const&) const = default;

private:
    std::time_t m_seconds;
};

} // namespace quillon
