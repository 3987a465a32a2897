#include "tarvikclient/gui/notificationpanel.h"

#include "gui/windowtest.h"
#include "tarvikclient/gui/clientwxevent.h"
#include "tarvikclient/gui/nestedloops.h"
#include "tarvikclient/gui/systray.h"

#include <gtest/gtest.h>
#include <wx/menu.h>
#include <wx/stattext.h>
#include <wx/uiaction.h>

namespace quillon {

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
        ++made;
        return new Menu(*this);
    }

    int made = 0;
    int deleted = 0;

private:
    struct Menu final : wxMenu {
        explicit Menu(Icon& owner) : icon(owner) { Append(wxID_ABOUT); }
        ~Menu() override { ++icon.deleted; }
        Icon& icon;
    };
};

class NotificationPanelTest : public testing::Test {
protected:
    ~NotificationPanelTest() override { delete panel; }

    /// What a click on the visible panel, or on something in it, leads to.
    bool staysAfterClickOn(wxWindow& window) {
        eventually([] { return false; }, 0.1); // drawn
        clickOn(window, wxMOUSE_BTN_LEFT);
        return !eventually([&] { return !panel->IsShown(); }, 1);
    }

    Icon icon;
    Panel* panel = new Panel;
};

} // namespace

TEST_F(NotificationPanelTest, IsShownAgainByANewLineOnly) {
    EXPECT_FALSE(panel->IsShown());
    panel->say("init");
    EXPECT_TRUE(panel->IsShown());
    panel->Show(false);
    panel->say("init");
    EXPECT_FALSE(panel->IsShown());
    panel->say("what is this");
    EXPECT_TRUE(panel->IsShown());
    EXPECT_EQ(panel->text(), "VPN_INIT");
}

TEST_F(NotificationPanelTest, IsHiddenByAClickAnywhereOnItAndByItsCloseRequest) {
    for (wxWindow* const window : {static_cast<wxWindow*>(panel), static_cast<wxWindow*>(&panel->label())}) {
        panel->say(window == panel ? "init" : "connected ip=10.1.2.3");
        EXPECT_FALSE(staysAfterClickOn(*window));
    }
    panel->say("getconfig");
    panel->Close();
    EXPECT_FALSE(panel->IsShown());
    EXPECT_FALSE(panel->IsBeingDeleted());
}

TEST_F(NotificationPanelTest, LetsDotsRunByItself) {
    panel->say("init");
    EXPECT_TRUE(eventually([&] { return panel->text() == "VPN_INIT."; }, 3));
    panel->updateVpnStatus();
    panel->updateVpnStatus();
    EXPECT_EQ(panel->text(), "VPN_INIT...");
    panel->updateVpnStatus();
    EXPECT_EQ(panel->text(), "VPN_INIT");
}

TEST_F(NotificationPanelTest, KeepsItsPlaceAndWidthWhateverTheStatus) {
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
    EXPECT_EQ(panel->text(), "VPN_GIVENIP 10.1.2.3");
    EXPECT_TRUE(panel->label().GetToolTipText().empty());
}

TEST_F(NotificationPanelTest, CarriesTheMenuUntilItNeedNot) {
    panel->carryMenu(&icon);
    EXPECT_TRUE(panel->IsShown());
    EXPECT_EQ(panel->text(), "STATUS_IDLE");
    EXPECT_TRUE(staysAfterClickOn(*panel));
    panel->Close();
    EXPECT_TRUE(panel->IsShown());
    panel->carryMenu(nullptr);
    EXPECT_FALSE(panel->IsShown()) << "has nothing to say";

    panel->say("init");
    panel->carryMenu(&icon);
    EXPECT_EQ(panel->text(), "VPN_INIT");
    panel->carryMenu(nullptr);
    EXPECT_TRUE(panel->IsShown());
    EXPECT_FALSE(staysAfterClickOn(*panel));
}

TEST_F(NotificationPanelTest, OneRightClickOpensTheMenuOnce) {
    wxTimer closer;
    closer.Bind(wxEVT_TIMER, [](wxTimerEvent&) {
        if (MenuLoop::isRunning())
            wxUIActionSimulator().Char(WXK_ESCAPE);
    });
    closer.Start(200);
    panel->carryMenu(&icon);
    int opened = 0;
    for (wxWindow* const window : {static_cast<wxWindow*>(panel), static_cast<wxWindow*>(&panel->label())}) {
        eventually([] { return false; }, 0.2);
        clickOn(*window, wxMOUSE_BTN_RIGHT);
        ++opened;
        EXPECT_TRUE(eventually([&] { return icon.deleted == opened; }));
        EXPECT_FALSE(eventually([&] { return icon.made > opened; }, 0.5));
    }
    EXPECT_TRUE(panel->IsShown());
}

} // namespace quillon
