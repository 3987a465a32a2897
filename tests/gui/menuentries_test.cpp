#include "tarvikclient/gui/menuentries.h"

#include <gtest/gtest.h>
#include <wx/defs.h>

namespace quillon {

TEST(MenuEntries, the_dock_brings_its_own_way_to_stop_and_the_status_icon_does_not) {
    auto const ids = [](bool withQuit) {
        std::vector<int> result;
        for (MenuEntry const& entry : menuEntries(withQuit))
            result.push_back(entry.id);
        return result;
    };
    EXPECT_EQ(ids(false), (std::vector<int>{10002, 10001, wxID_SEPARATOR, wxID_ABOUT}));
    EXPECT_EQ(ids(true), (std::vector<int>{10002, 10001, wxID_SEPARATOR, wxID_ABOUT, wxID_EXIT}));
}

} // namespace quillon
