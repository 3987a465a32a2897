#include "gui/statuswatcher.h"
#include "gui/traymanager.h"
#include "gui/windowtest.h"
#include "support/logcapture.h"
#include "tarvikclient/gui/desktop.h"
#include "tarvikclient/gui/statusarea.h"
#include "tarvikclient/gui/systray.h"

#include <gtest/gtest.h>
#include <wx/stopwatch.h>
#include <wx/timer.h>
#include <wx/uiaction.h>

#include <optional>
#include <vector>

namespace quillon {

namespace {

constexpr StatusRung item = StatusRung::notifierItem, tray = StatusRung::tray, none = StatusRung::none;

class StatusDesktop : public testing::Test {
protected:
    static void SetUpTestSuite() { bus = new test::SessionBus; }
    static void TearDownTestSuite() { delete std::exchange(bus, nullptr); }

    StatusDesktop() {
        icon.Bind(wxEVT_MENU, [this](wxCommandEvent& event) { chosen.push_back(event.GetId()); });
    }

    bool reaches(std::vector<StatusRung> const& rungs) {
        return eventually([&] { return taken.size() >= rungs.size(); }) && taken == rungs;
    }
    bool registers(test::StatusWatcher& watcher) {
        return eventually([&] { return watcher.hasItem(); });
    }

    static test::SessionBus* bus;
    test::LogCapture log;
    TarvikSystrayIcon icon{wxTBI_CUSTOM_STATUSITEM};
    std::vector<StatusRung> taken;
    std::vector<int> chosen;
    StatusArea area{icon, [this](StatusRung rung) { taken.push_back(rung); }};
};

test::SessionBus* StatusDesktop::bus = nullptr;

} // namespace

TEST_F(StatusDesktop, AWatcherIsGivenTheItemWithItsMenu) {
    test::StatusWatcher watcher(*bus);
    area.show();
    ASSERT_TRUE(registers(watcher));
    EXPECT_EQ(taken, std::vector<StatusRung>{item});
    EXPECT_EQ(watcher.property("IconName"), "tarvikclient");
    EXPECT_TRUE(watcher.property("IconThemePath").ends_with("/share/icons"))
        << watcher.property("IconThemePath");
    EXPECT_EQ(watcher.property("Title"), "Tarvik Client");
    EXPECT_EQ(watcher.property("Status"), "Active");
    EXPECT_EQ(watcher.labels(),
              (std::vector<std::string>{"MENU_SETTINGS", "MENU_LOGS", "-", "About", "Quit"}));
    for (char const* label : {"Quit", "MENU_SETTINGS"})
        watcher.click(label);
    EXPECT_TRUE(eventually([&] { return chosen.size() == 2; }));
    EXPECT_EQ(chosen, (std::vector<int>{wxID_EXIT, TarvikSystrayIcon::menuSettings}));
}

TEST_F(StatusDesktop, EveryChangeOfTheDesktopIsFollowedAndNamedInTheLog) {
    area.show();
    ASSERT_TRUE(reaches({none}));
    std::optional<test::TrayManager> manager(std::in_place);
    ASSERT_TRUE(reaches({none, tray}));
    ASSERT_TRUE(eventually([&] { return manager->hasIcon(); }));
    std::optional<test::StatusWatcher> watcher(*bus);
    ASSERT_TRUE(reaches({none, tray, item}));
    ASSERT_TRUE(registers(*watcher));
    EXPECT_TRUE(eventually([&] { return !manager->hasIcon(); })) << "two icons";
    watcher.reset();
    ASSERT_TRUE(reaches({none, tray, item, tray}));
    ASSERT_TRUE(eventually([&] { return manager->hasIcon(); }));
    watcher.emplace(*bus);
    ASSERT_TRUE(reaches({none, tray, item, tray, item}));
    ASSERT_TRUE(registers(*watcher));
    EXPECT_EQ(watcher->labels().size(), 5u);
    manager.reset();
    watcher.reset();
    ASSERT_TRUE(reaches({none, tray, item, tray, item, none}));
    EXPECT_EQ(log.count("StatusArea.take status icon: StatusNotifierItem"), 2u);
    EXPECT_EQ(log.count("StatusArea.take status icon: system tray"), 2u);
    EXPECT_EQ(log.count("StatusArea.take status icon: none, the panel carries the menu"), 2u);
}

TEST_F(StatusDesktop, AnItemThatIsTakenAwayIsHiddenAndNotReplaced) {
    test::TrayManager manager;
    std::optional<test::StatusWatcher> watcher(*bus);
    area.show();
    ASSERT_TRUE(registers(*watcher));
    area.remove();
    EXPECT_TRUE(eventually([&] { return watcher->property("Status") == "Passive"; }));
    watcher.reset();
    EXPECT_FALSE(eventually([&] { return manager.hasIcon(); }, 0.5));
    EXPECT_EQ(taken, std::vector<StatusRung>{item});
}

TEST_F(StatusDesktop, ALeftClickInTheTrayPopsTheMenuUp) {
    test::TrayManager manager;
    area.show();
    ASSERT_TRUE(eventually([&] { return manager.hasIcon(); }));
    wxUIActionSimulator user;
    wxTimer keys;
    keys.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
        user.Char(WXK_DOWN);
        user.Char(WXK_RETURN);
    });
    icon.Bind(wxEVT_MENU_OPEN, [&](wxMenuEvent&) { keys.StartOnce(200); });
    manager.pointAtIcon();
    user.MouseClick();
    EXPECT_TRUE(eventually([&] { return !chosen.empty(); }));
    EXPECT_EQ(chosen, std::vector<int>{TarvikSystrayIcon::menuSettings});
}

TEST_F(StatusDesktop, ABusThatHangsHoldsNothingUp) {
    bus->freeze(true);
    wxStopWatch const watch;
    area.show();
    showDesktopNotification("Tarvik", "connected");
    EXPECT_LT(watch.Time(), 150);
    EXPECT_TRUE(reaches({none}));
    EXPECT_LT(watch.Time(), 1000);
    bus->freeze(false);
    test::StatusWatcher watcher(*bus);
    EXPECT_TRUE(reaches({none, item}));
}

TEST_F(StatusDesktop, ANotificationReplacesTheLastAndIsNoMarkup) {
    test::NotificationService const service(*bus);
    showDesktopNotification("Tarvik", "init");
    showDesktopNotification("Tarvik", "skipped");
    showDesktopNotification("Tarvik", "<b>10.0.0.1</b> & more");
    ASSERT_TRUE(eventually([&] { return !service.messages().empty(); }));
    showDesktopNotification("Tarvik", "stopped");
    ASSERT_TRUE(eventually([&] { return service.messages().size() == 2; }));
    EXPECT_EQ(service.messages()[0].text, "&lt;b&gt;10.0.0.1&lt;/b&gt; &amp; more");
    EXPECT_EQ(service.messages()[1].text, "stopped");
    EXPECT_EQ(service.messages()[1].replaces, 1u);
}

// The last of them: there is no second bus in a process.
TEST_F(StatusDesktop, TheEndOfTheBusIsNotTheEndOfTheProcess) {
    test::StatusWatcher watcher(*bus);
    area.show();
    ASSERT_TRUE(registers(watcher));
    bus->end();
    EXPECT_TRUE(reaches({item, none}));
}

} // namespace quillon
