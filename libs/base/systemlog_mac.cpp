#include "base/systemlog.h"

// Foundation's function, declared here because its header is Objective-C. A constant CFString serves as the
// NSString that it takes: the two are the same object to the runtime.
extern "C" void NSLog(void const* format, ...);

namespace quillon::native {

void systemLog(LogCategory, char const* text) noexcept {
    NSLog(__builtin___CFStringMakeConstantString("%s"), text);
}

} // namespace quillon::native
