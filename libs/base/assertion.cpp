#include "base/assertion.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace quillon {

namespace {

void writeToStandardError(char const* text) noexcept {
    std::fprintf(stderr, "Assert: %s\n", text);
}

constinit std::atomic<AssertionReporter> g_reporter = &writeToStandardError;

} // namespace

void reportAssertionsTo(AssertionReporter reporter) noexcept {
    g_reporter = reporter;
}

void assertionFailed(char const* expression, char const* file, int line) noexcept {
    char text[1024];
    std::snprintf(text, sizeof text, "%s:%d: %s", file, line, expression);
    g_reporter.load()(text);
    std::abort();
}

} // namespace quillon
