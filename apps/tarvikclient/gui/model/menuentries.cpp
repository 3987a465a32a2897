#include "tarvikclient/gui/model/menuentries.h"

#include <wx/defs.h>
#include <wx/translation.h>

namespace quillon {

std::vector<MenuEntry> menuEntries(bool withQuit) {
    std::vector<MenuEntry> entries = {
        // TRANSLATORS: entry of the status icon's menu: opens the settings
        {menuSettings, wxTRANSLATE("MENU_SETTINGS"), "tarvik-config"},
        // TRANSLATORS: entry of the status icon's menu: shows the log file
        {menuLogs, wxTRANSLATE("MENU_LOGS"), "tarvik-logs"},
        {wxID_SEPARATOR, nullptr, nullptr},
        {wxID_ABOUT, nullptr, nullptr},
    };
    if (withQuit)
        entries.push_back({wxID_EXIT, nullptr, "tarvik-stop"});
    return entries;
}

} // namespace quillon
