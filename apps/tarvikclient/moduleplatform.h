// Which modules this client can load.
#pragma once

#include "base/string.h"

namespace quillon {

/// The platform of this client as a module's manifest names it.
String modulePlatform();

} // namespace quillon
