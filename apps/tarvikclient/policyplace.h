// Where the administrator's policy is.
#pragma once

#include <sys/types.h>

namespace quillon {

/// A path and whose file must stand there. The path is a C string that lives as long as the program.
struct PolicyPlace {
    char const* path;
    uid_t owner;
};

/// The program's own place. Each program says it for itself, once, and none can leave it out: the client does
/// not link without it.
PolicyPlace policyPlace();

} // namespace quillon
