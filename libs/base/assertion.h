// Fatal assertions: a programming error ends the process with one ASSERT log line.
#pragma once

namespace quillon {

/// Gets "file:line: expression" of an assertion that does not hold and returns when that is written, or
/// cannot be within a bounded time.
using AssertionReporter = void (*)(char const* text) noexcept;

/// Where failed assertions are reported from now on: the console installs itself. Until then they are written
/// to standard error. Any thread.
void reportAssertionsTo(AssertionReporter reporter) noexcept;

/// Reports `expression` with the place in the source and aborts the process. Any thread.
[[noreturn]] void assertionFailed(char const* expression, char const* file, int line) noexcept;

} // namespace quillon

/// Aborts with the log line `text` unless `condition` holds. Stays in release builds.
#define QUILLON_ASSERT(condition, text)                                                                      \
    do {                                                                                                     \
        if (!(condition)) [[unlikely]]                                                                       \
            ::quillon::assertionFailed(text, __FILE__, __LINE__);                                            \
    } while (false)
