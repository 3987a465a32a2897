// What the status icon's menu offers.
#pragma once

#include <vector>

namespace quillon {

struct MenuEntry {
    int id;          ///< wxID_SEPARATOR for a line between others
    char const* key; ///< of the translation; null where the toolkit has a label for the id
    char const* art; ///< the picture's art id; null for none
};

/// In the order shown. A dock's menu brings its own way to stop, a status icon's does not. Any thread.
std::vector<MenuEntry> menuEntries(bool withQuit);

} // namespace quillon
