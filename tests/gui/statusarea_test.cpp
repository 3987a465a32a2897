#include "tarvikclient/gui/statusarea.h"

#include "gui/windowtest.h"
#include "support/logcapture.h"
#include "tarvikclient/gui/desktop.h"
#include "tarvikclient/gui/systray.h"

#include <gtest/gtest.h>
#include <wx/stopwatch.h>

#include <vector>

namespace quillon {

namespace {

constexpr StatusRung item = StatusRung::notifierItem, tray = StatusRung::tray, none = StatusRung::none;

} // namespace

TEST(StatusArea, TheBestRungOnOfferIsTakenAndOnlyChangesAreTold) {
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

TEST(StatusArea, ABareDesktopIsRecognisedAtOnceAndLeavesTheMenuToThePanel) {
    test::LogCapture const log;
    std::vector<StatusRung> taken;
    TarvikSystrayIcon icon(wxTBI_CUSTOM_STATUSITEM);
    StatusArea area(icon, [&](StatusRung rung) { taken.push_back(rung); });
    wxStopWatch const watch;
    area.show();
    area.show();
    EXPECT_LT(watch.Time(), 100);
    ASSERT_TRUE(eventually([&] { return !taken.empty(); }, 1));
    EXPECT_EQ(taken, std::vector<StatusRung>{none});
    EXPECT_TRUE(log.contains("StatusArea.take status icon: none, the panel carries the menu")) << log.text();
}

TEST(StatusArea, RemovedBeforeTheDesktopAnsweredItStaysRemoved) {
    int calls = 0;
    TarvikSystrayIcon icon(wxTBI_CUSTOM_STATUSITEM);
    StatusArea area(icon, [&](StatusRung) { ++calls; });
    area.show();
    area.remove();
    area.show();
    wxStopWatch const watch;
    eventually([&] { return calls > 0 || watch.Time() > 400; });
    EXPECT_EQ(calls, 0);
}

TEST(StatusArea, ANotificationWithoutABusNeitherBlocksNorFails) {
    wxStopWatch const watch;
    showDesktopNotification("Tarvik", "connected");
    showDesktopNotification("Tarvik", "stopped");
    EXPECT_LT(watch.Time(), 100);
    EXPECT_TRUE(windowsCanBePlaced());
}

} // namespace quillon
