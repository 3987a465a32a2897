#include "base/assertion.h"

#include "base/console.h"

#include <cstdlib>

namespace quillon {

void assertionFailed(char const* expression, char const* file, int line) noexcept {
    log(ASSERT, "Assert", String(), String(file) + ":" + toString(line) + ": " + expression);
    if (Console* const target = Console::instance().get())
        target->drain(1000);
    std::abort();
}

} // namespace quillon
