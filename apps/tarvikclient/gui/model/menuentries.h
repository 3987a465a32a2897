// What the status icon's menu offers.
#pragma once

#include <vector>

namespace quillon {

/// The entries that are the client's own.
enum MenuId { menuLogs = 10001, menuSettings = 10002 };

struct MenuEntry {
    int id;          ///< a MenuId or one of wxWidgets'; wxID_SEPARATOR for a line between others
    char const* key; ///< of the translation; null where the toolkit has a label for the id
    char const* art; ///< the picture's art id; null for none
};

/// In the order shown. A dock's menu brings its own way to stop, a status icon's does not. Any thread.
std::vector<MenuEntry> menuEntries(bool withQuit);

} // namespace quillon
