// Bad input is logged, and a fuzzer makes nothing else: the lines go nowhere.
#include "base/console.h"

namespace quillon::fuzz {

namespace {

[[maybe_unused]] bool const g_quiet = [] {
    for (LogCategory const category : {TRACE, DEBUG, ERROR, ASSERT})
        Console::instance()->setStream(category, "null");
    return true;
}();

} // namespace

} // namespace quillon::fuzz
