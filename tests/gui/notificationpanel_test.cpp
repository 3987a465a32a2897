#include "tarvikclient/gui/notificationpanel.h"

#include "gui/windowtest.h"
#include "tarvikclient/gui/clientwxevent.h"
#include "tarvikclient/gui/nestedloops.h"
#include "tarvikclient/gui/systray.h"

#include <gtest/gtest.h>
#include <wx/menu.h>
#include <wx/stattext.h>
#include <wx/uiaction.h>

namespace quillon::test {

namespace {

class Panel final : public TarvikClientNotificationPanel {
public:
    Panel() : TarvikClientNotificationPanel(nullptr) {}

    void say(wxString const& line) {
        wxThreadEvent event(EVT_TYPE_CLIENTNOTIFY, CLIENTNOTIFY_VPN_STATUS);
        event.SetString(line);
        onVpnStatus(event);
    }
    wxStaticText& label() { return *statusLabel; }
    wxString text() { return statusLabel->GetLabelText(); }
};

/// An icon whose menus are counted.
class Icon final : public TarvikSystrayIcon {
public:
    Icon() : TarvikSystrayIcon(wxTBI_CUSTOM_STATUSITEM) {}

    wxMenu* CreatePopupMenu() override {
        ++menus;
        return TarvikSystrayIcon::CreatePopupMenu();
    }

    int menus = 0;
};

class NotificationPanel : public testing::Test {
protected:
    ~NotificationPanel() override { delete panel; }

    /// A click on the visible panel, or on something in it.
    static void click(wxWindow& window, int mouseButton = wxMOUSE_BTN_LEFT) {
        eventually([] { return false; }, 0.2); // drawn
        clickOn(window, mouseButton);
    }
    bool isHidden() {
        return eventually([&] { return !panel->IsShown(); }, 1);
    }

    Icon icon;
    Panel* panel = new Panel;
};

} // namespace

TEST_F(NotificationPanel, its_menu_shows_no_keys_for_they_would_do_nothing) {
    std::unique_ptr<wxMenu> const menu(icon.CreatePopupMenu());
    for (wxMenuItem const* const item : menu->GetMenuItems())
        EXPECT_FALSE(item->GetItemLabel().Contains("\t")) << item->GetItemLabel();
}

TEST_F(NotificationPanel, is_shown_again_by_a_new_line_only_though_its_dots_run) {
    EXPECT_FALSE(panel->IsShown());
    panel->say("init");
    EXPECT_TRUE(panel->IsShown());
    click(*panel);
    EXPECT_TRUE(isHidden());
    panel->say("init");
    EXPECT_TRUE(eventually([&] { return panel->text() == "VPN_INIT.."; }, 5));
    EXPECT_FALSE(panel->IsShown());
    panel->say("what is this");
    EXPECT_TRUE(panel->IsShown());
    panel->say("init"); // not repeated: it has come back
    EXPECT_EQ(panel->text(), "VPN_INIT");
}

TEST_F(NotificationPanel, is_hidden_by_a_click_anywhere_on_it_and_by_its_close_request) {
    panel->say("init");
    click(*panel);
    EXPECT_TRUE(isHidden());
    panel->say("connected ip=10.1.2.3");
    click(panel->label());
    EXPECT_TRUE(isHidden());
    panel->say("getconfig");
    panel->Close();
    EXPECT_TRUE(isHidden());
    EXPECT_FALSE(panel->IsBeingDeleted());
}

TEST_F(NotificationPanel, keeps_its_place_and_width_whatever_the_status) {
    wxRect const before = panel->GetScreenRect();
    wxRect const area = wxGetClientDisplayRect();
    EXPECT_EQ(before.GetTopLeft(), wxPoint(area.x + area.width - 1 - before.width, area.y));
    EXPECT_EQ(before.GetSize(), wxSize(341, 129));
    wxString const address(1000, 'W');
    for (wxString const& line : {"connected ip=" + address, "connected ip=&" + address + "\n" + address}) {
        panel->say(line);
        eventually([] { return false; }, 0.1);
        EXPECT_EQ(panel->GetScreenRect(), before);
        EXPECT_NE(panel->text().Last(), 'W') << "cut without a sign";
        EXPECT_TRUE(panel->label().GetToolTipText().EndsWith(address));
        wxRect const label = panel->label().GetRect();
        EXPECT_LE(panel->label().GetTextExtent(panel->text()).x, label.width);
        EXPECT_LE(label.GetRight(), panel->GetClientSize().x);
    }
    panel->say("connected ip=10.1.2.3");
    EXPECT_TRUE(panel->label().GetToolTipText().empty());
}

TEST_F(NotificationPanel, carries_the_menu_until_it_need_not) {
    panel->carryMenu(&icon);
    EXPECT_EQ(panel->text(), "STATUS_IDLE");
    click(*panel);
    panel->Close();
    EXPECT_FALSE(isHidden());
    panel->carryMenu(nullptr);
    EXPECT_TRUE(isHidden()) << "has nothing to say";

    panel->say("init");
    panel->carryMenu(&icon);
    panel->carryMenu(nullptr);
    EXPECT_TRUE(panel->IsShown());
    click(*panel);
    EXPECT_TRUE(isHidden());
}

TEST_F(NotificationPanel, one_right_click_opens_the_menu_once) {
    panel->carryMenu(&icon);
    wxTimer closer;
    closer.Bind(wxEVT_TIMER, [](wxTimerEvent&) {
        if (MenuLoop::isRunning())
            wxUIActionSimulator().Char(WXK_ESCAPE);
    });
    closer.Start(200);
    for (wxWindow* const window : {static_cast<wxWindow*>(panel), static_cast<wxWindow*>(&panel->label())}) {
        icon.menus = 0;
        click(*window, wxMOUSE_BTN_RIGHT);
        EXPECT_TRUE(eventually([&] { return icon.menus > 0 && !MenuLoop::isRunning(); }));
        EXPECT_FALSE(eventually([&] { return icon.menus > 1; }, 0.5));
    }
    EXPECT_TRUE(panel->IsShown());
}

} // namespace quillon::test
