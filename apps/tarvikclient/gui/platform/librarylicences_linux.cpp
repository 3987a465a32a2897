#include "tarvikclient/gui/platform/librarylicences.h"

namespace quillon {

char const* platformLibraryLicences() {
    return "libidn2: GNU LGPL 3 or later, or GNU GPL 2 or later\n"
           "GTK: GNU LGPL 2.1 or later\n"
           "libayatana-appindicator: GNU LGPL 2.1 or GNU LGPL 3\n";
}

} // namespace quillon
