// glibc replaces $LIB, $PLATFORM and $ORIGIN wherever they stand in a path, and a version or a user's home
// may hold such words. The directory's own name in /proc holds none and cannot be led elsewhere. With the
// process's number in place of "self" it also means the same to programs that a module starts.
#include "tarvikclient/loadpath.h"

#include "base/stringconversion.h"

#include <unistd.h>

namespace quillon {

String loadPathOf(int directory, String const& name) {
    return "/proc/" + toString(getpid()) + "/fd/" + toString(directory) + "/" + name;
}

} // namespace quillon
