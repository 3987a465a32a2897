#include "tarvikclient/gui/platform/librarylicences.h"

namespace quillon {

// What else there is comes with the system.
char const* platformLibraryLicences() {
    return "";
}

} // namespace quillon
