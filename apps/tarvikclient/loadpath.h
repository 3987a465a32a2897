// What the dynamic linker is told to load.
#pragma once

#include "base/string.h"

namespace quillon {

/// A path to `name` in the directory that the descriptor `directory` holds, for dlopen(). The linker takes it
/// byte for byte for as long as the descriptor is open: names that came over the network are not in it.
/// `name` is the client's own. Empty when there is none.
String loadPathOf(int directory, String const& name);

} // namespace quillon
