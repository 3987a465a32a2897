// dyld replaces words such as @loader_path at the beginning of a path alone, and an absolute path begins with
// none of them.
#include "tarvikclient/loadpath.h"

#include <fcntl.h>
#include <sys/param.h>

namespace quillon {

String loadPathOf(int directory, String const& name) {
    char path[MAXPATHLEN];
    return fcntl(directory, F_GETPATH, path) == 0 ? String::copyOf(path) + "/" + name : String();
}

} // namespace quillon
