#include "tarvikclient/gui/statusarea.h"

#include "gui/statuswatcher.h"
#include "gui/traymanager.h"
#include "gui/windowtest.h"
#include "support/logcapture.h"
#include "tarvikclient/gui/model/menuentries.h"
#include "tarvikclient/gui/nestedloops.h"
#include "tarvikclient/gui/platform/desktopnotification.h"
#include "tarvikclient/gui/systray.h"

#include <gtest/gtest.h>
#include <wx/dialog.h>
#include <wx/timer.h>
#include <wx/uiaction.h>

#include <optional>
#include <vector>

namespace quillon {

namespace {

constexpr StatusRung item = StatusRung::notifierItem, tray = StatusRung::tray, none = StatusRung::none;

constexpr char notificationInterface[] = R"(<node><interface name="org.freedesktop.Notifications">
  <method name="Notify">
    <arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="as" direction="in"/>
    <arg type="a{sv}" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="out"/>
  </method>
  <method name="CloseNotification"><arg type="u" direction="in"/></method>
</interface></node>)";

class StatusAreaTest : public testing::Test {
protected:
    test::LogCapture log;
    TarvikSystrayIcon icon{wxTBI_CUSTOM_STATUSITEM};
    std::vector<StatusRung> taken;
    StatusArea area{icon, [this](StatusRung rung) { taken.push_back(rung); }};
};

/// A desktop with a session bus, on which there is nothing at first.
class StatusDesktop : public StatusAreaTest {
protected:
    static void SetUpTestSuite() {
        bus.emplace();
        usePictures();
    }
    static void TearDownTestSuite() { bus.reset(); }

    StatusDesktop() {
        icon.Bind(wxEVT_MENU, [this](wxCommandEvent& event) {
            chosen.push_back(event.GetId());
            event.Skip(); // without commands the icon's own handlers do nothing
        });
    }

    bool reaches(std::vector<StatusRung> const& rungs) {
        return eventually([&] { return taken.size() >= rungs.size(); }) && taken == rungs;
    }
    bool registers(test::StatusWatcher& watcher) {
        return eventually([&] { return watcher.hasItem(); });
    }

    static inline std::optional<test::SessionBus> bus;
    std::vector<int> chosen;
};

} // namespace

TEST_F(StatusAreaTest, a_bare_desktop_is_recognised_at_once_and_leaves_the_menu_to_the_panel) {
    area.show();
    area.show();
    showDesktopNotification("Tarvik", "connected");
    ASSERT_TRUE(eventually([&] { return !taken.empty(); }, 1));
    EXPECT_EQ(taken, std::vector<StatusRung>{none});
    EXPECT_TRUE(log.contains("StatusArea.take status icon: none, the panel carries the menu")) << log.text();
}

TEST_F(StatusAreaTest, removed_before_the_desktop_answered_it_still_tells_that_there_is_no_icon) {
    area.show();
    area.remove();
    area.show();
    EXPECT_TRUE(eventually([&] { return !taken.empty(); }));
    EXPECT_EQ(taken, std::vector<StatusRung>{none});
}

TEST_F(StatusDesktop, a_watcher_is_given_the_item_with_its_menu) {
    test::StatusWatcher watcher;
    area.show();
    ASSERT_TRUE(registers(watcher));
    EXPECT_EQ(taken.back(), item);
    EXPECT_EQ(watcher.property("IconName"), "tarvikclient-symbolic");
    EXPECT_TRUE(watcher.property("IconThemePath").ends_with("/share/icons"));
    EXPECT_EQ(watcher.property("Status"), "Active");
    area.tell(SessionMood::trouble, "lost");
    for (auto const& [name, value] :
         {std::pair("IconName", "tarvikclient-trouble-symbolic"),
          std::pair("AttentionIconName", "tarvikclient-trouble-symbolic"),
          std::pair("IconAccessibleDesc", "lost"), std::pair("ToolTip", "('', [], 'Tarvik Client', 'lost')"),
          std::pair("Status", "NeedsAttention")})
        EXPECT_EQ(watcher.property(name), value);
    area.tell(SessionMood::connected, "connected");
    EXPECT_EQ(watcher.property("Status"), "Active");
    watcher.click("_Quit");
    watcher.click("MENU__SETTINGS");
    EXPECT_TRUE(eventually([&] { return chosen.size() == 2; }));
    EXPECT_EQ(chosen, (std::vector<int>{wxID_EXIT, menuSettings}));
    whenModal([&](wxDialog& open) {
        watcher.click("_Quit");
        EXPECT_TRUE(eventually([&] { return chosen.size() == 3; })) << "unheard while a dialog is open";
        open.EndModal(wxID_CANCEL);
    });
    wxDialog(nullptr, wxID_ANY, "Settings").ShowModal();
}

TEST_F(StatusDesktop, every_change_of_the_desktop_is_followed_and_named_in_the_log) {
    area.show();
    ASSERT_TRUE(reaches({none}));
    std::optional<test::TrayManager> manager(std::in_place);
    ASSERT_TRUE(reaches({none, tray}));
    ASSERT_TRUE(eventually([&] { return manager->hasIcon(); }));
    std::optional<test::StatusWatcher> watcher(std::in_place);
    ASSERT_TRUE(reaches({none, tray, item}));
    ASSERT_TRUE(registers(*watcher));
    EXPECT_TRUE(eventually([&] { return !manager->hasIcon(); })) << "two icons";
    watcher.reset();
    ASSERT_TRUE(reaches({none, tray, item, tray}));
    ASSERT_TRUE(eventually([&] { return manager->hasIcon(); }));
    watcher.emplace();
    ASSERT_TRUE(reaches({none, tray, item, tray, item}));
    ASSERT_TRUE(registers(*watcher));
    watcher->click("_Quit");
    manager.reset();
    watcher.reset();
    ASSERT_TRUE(reaches({none, tray, item, tray, item, none}));
    EXPECT_EQ(log.count("StatusArea.take status icon: StatusNotifierItem"), 2u);
    EXPECT_EQ(log.count("StatusArea.take status icon: system tray"), 2u);
    EXPECT_EQ(log.count("StatusArea.take status icon: none, the panel carries the menu"), 2u);
}

TEST_F(StatusDesktop, an_item_that_is_taken_away_is_hidden_and_not_replaced) {
    test::TrayManager manager;
    std::optional<test::StatusWatcher> watcher(std::in_place);
    area.show();
    ASSERT_TRUE(registers(*watcher));
    area.remove();
    EXPECT_TRUE(eventually([&] { return watcher->property("Status") == "Passive"; }));
    watcher.reset();
    EXPECT_FALSE(eventually([&] { return manager.hasIcon(); }, 0.5));
    EXPECT_EQ(taken.back(), item);
}

TEST_F(StatusDesktop, an_icon_that_is_removed_before_the_desktop_answered_never_comes) {
    test::TrayManager manager;
    bus->freeze(true);
    area.show();
    area.remove();
    EXPECT_FALSE(eventually([&] { return manager.hasIcon() || !taken.empty(); }, 0.5));
    bus->freeze(false);
}

TEST_F(StatusDesktop, a_left_click_in_the_tray_pops_the_menu_up) {
    test::TrayManager manager;
    area.show();
    ASSERT_TRUE(eventually([&] { return manager.hasIcon(); }));
    wxUIActionSimulator user;
    wxTimer keys;
    keys.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
        if (!MenuLoop::isRunning())
            return;
        user.Char(WXK_DOWN);
        user.Char(WXK_RETURN);
    });
    keys.Start(200);
    manager.pointAtIcon();
    user.MouseClick();
    EXPECT_TRUE(eventually([&] { return !chosen.empty(); }));
    EXPECT_EQ(chosen, std::vector<int>{menuSettings});
    wxDialog dialog(nullptr, wxID_ANY, "Settings");
    wxTimer end;
    end.Bind(wxEVT_TIMER, [&](wxTimerEvent&) { dialog.EndModal(wxID_CANCEL); });
    whenModal([&](wxDialog&) {
        user.MouseClick();
        end.StartOnce(1500);
    });
    NestedLoops const loops;
    dialog.ShowModal();
    EXPECT_EQ(chosen.size(), 2u) << "dead while a dialog is open";
}

TEST_F(StatusDesktop, a_bus_that_hangs_holds_nothing_up) {
    bus->freeze(true);
    area.show();
    showDesktopNotification("Tarvik", "connected");
    EXPECT_TRUE(reaches({none}));
    bus->freeze(false);
    test::StatusWatcher watcher;
    EXPECT_TRUE(reaches({none, item}));
}

TEST_F(StatusDesktop, a_notification_replaces_the_last_and_is_no_markup) {
    std::vector<std::pair<unsigned, std::string>> messages; // each replaces one, or 0
    unsigned closed = 0;
    test::Service const service("org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                                notificationInterface, [&](char const*, GVariant* parameters) {
                                    unsigned replaced = 0;
                                    if (g_variant_n_children(parameters) == 1) { // CloseNotification
                                        g_variant_get(parameters, "(u)", &closed);
                                        return static_cast<GVariant*>(nullptr);
                                    }
                                    char const* text = nullptr;
                                    g_variant_get_child(parameters, 1, "u", &replaced);
                                    g_variant_get_child(parameters, 4, "&s", &text);
                                    messages.emplace_back(replaced, text);
                                    return g_variant_new("(u)", 7);
                                });
    showDesktopNotification("Tarvik", "init");
    showDesktopNotification("Tarvik", "skipped");
    showDesktopNotification("Tarvik", "<b>10.0.0.1</b> & more");
    ASSERT_TRUE(eventually([&] { return !messages.empty(); }));
    showDesktopNotification("Tarvik", "stopped");
    ASSERT_TRUE(eventually([&] { return messages.size() == 2; }));
    EXPECT_EQ(messages[0].second, "&lt;b&gt;10.0.0.1&lt;/b&gt; &amp; more");
    EXPECT_EQ(messages[1], std::pair(7u, std::string("stopped")));
    withdrawDesktopNotification();
    EXPECT_TRUE(eventually([&] { return closed == 7; }, 2));
}

// The last of them: there is no second bus in a process.
TEST_F(StatusDesktop, the_end_of_the_bus_is_not_the_end_of_the_process) {
    test::StatusWatcher watcher;
    area.show();
    ASSERT_TRUE(registers(watcher));
    bus->end();
    EXPECT_TRUE(eventually([&] { return taken.back() == none; }));
}

} // namespace quillon
