// Fatal assertions: a programming error ends the process with one ASSERT log line.
#pragma once

namespace quillon {

/// Logs `expression` at category ASSERT with the place in the source, waits a bounded time for the log to be
/// written and aborts the process. Any thread.
[[noreturn]] void assertionFailed(char const* expression, char const* file, int line) noexcept;

} // namespace quillon

/// Aborts with the log line `text` unless `condition` holds. Stays in release builds.
#define QUILLON_ASSERT(condition, text)                                                                      \
    do {                                                                                                     \
        if (!(condition)) [[unlikely]]                                                                       \
            ::quillon::assertionFailed(text, __FILE__, __LINE__);                                            \
    } while (false)
