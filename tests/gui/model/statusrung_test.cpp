#include "tarvikclient/gui/model/statusrung.h"

#include <gtest/gtest.h>

#include <vector>

namespace quillon {

namespace {

constexpr StatusRung item = StatusRung::notifierItem, tray = StatusRung::tray, none = StatusRung::none;

TEST(StatusRungChoice, the_best_rung_on_offer_is_taken_and_only_changes_are_told) {
    struct Step {
        char const* what;
        void (*happens)(StatusRungChoice&);
        std::vector<StatusRung> takenSoFar;
    };
    Step const steps[] = {
        {"a tray while the bus is silent", [](auto& c) { c.setTray(true); }, {}},
        {"the bus stays silent", [](auto& c) { c.stopWaiting(); }, {tray}},
        {"it answers at last: no watcher", [](auto& c) { c.setWatcher(false); }, {tray}},
        {"a watcher comes", [](auto& c) { c.setWatcher(true); }, {tray, item}},
        {"the tray goes, unused", [](auto& c) { c.setTray(false); }, {tray, item}},
        {"the watcher goes", [](auto& c) { c.setWatcher(false); }, {tray, item, none}},
        {"a tray comes", [](auto& c) { c.setTray(true); }, {tray, item, none, tray}},
        {"the wait ends late", [](auto& c) { c.stopWaiting(); }, {tray, item, none, tray}},
    };
    std::vector<StatusRung> taken;
    StatusRungChoice choice([&](StatusRung rung) { taken.push_back(rung); });
    for (Step const& step : steps) {
        step.happens(choice);
        EXPECT_EQ(taken, step.takenSoFar) << step.what;
    }
}

} // namespace

} // namespace quillon
