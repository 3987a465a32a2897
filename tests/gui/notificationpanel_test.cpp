#include "tarvikclient/gui/notificationpanel.h"

#include "gui/windowtest.h"
#include "tarvikclient/gui/clientwxevent.h"
#include "tarvikclient/gui/model/menuentries.h"
#include "tarvikclient/gui/nestedloops.h"
#include "tarvikclient/gui/systray.h"

#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/clipbrd.h>
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
    wxButton& opener() { return *menuButton; }
    wxButton& copyButton() { return *addressButton; }
};

/// An icon whose menus are counted.
class Icon final : public TarvikSystrayIcon {
public:
    Icon() : TarvikSystrayIcon(wxTBI_CUSTOM_STATUSITEM) {
        Bind(wxEVT_MENU, [this](wxCommandEvent& event) { chosen = event.GetId(); });
    }

    wxMenu* CreatePopupMenu() override {
        ++menus;
        return TarvikSystrayIcon::CreatePopupMenu();
    }

    int menus = 0;
    int chosen = 0;
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

TEST_F(NotificationPanel, stays_in_its_corner_and_grows_with_its_text_as_far_as_the_screen) {
    wxRect const area = wxGetClientDisplayRect();
    EXPECT_EQ(panel->GetSize(), wxSize(341, 129));
    wxString const far(2000, 'W');
    for (wxString const& line :
         {wxString("connected ip=10.1.2.3"), wxString("connected ip=2001:db8:85a3:1234:5678:8a2e:370:7334"),
          "connected ip=&" + far + "\n" + far, wxString("init")}) {
        panel->say(line);
        eventually([] { return false; }, 0.1);
        wxRect const place = panel->GetScreenRect();
        EXPECT_EQ(place.GetTopLeft(), wxPoint(std::max(0, area.x + area.width - 1 - place.width), area.y));
        EXPECT_LE(place.width, area.width);
        int const width = panel->label().GetTextExtent(panel->text()).x;
        bool const whole = width <= panel->label().GetSize().x;
        EXPECT_EQ(whole, width < area.width / 2) << line;
        EXPECT_EQ(panel->label().GetToolTipText(), whole ? wxString() : panel->text());
    }
}

TEST_F(NotificationPanel, copies_the_address_of_a_tunnel_that_stands) {
    EXPECT_FALSE(panel->copyButton().IsShown());
    panel->say("connected ip=2001:db8::1");
    click(panel->copyButton());
    wxTextDataObject copied;
    EXPECT_TRUE(eventually(
        [&] {
            wxClipboardLocker const lock;
            return wxTheClipboard->GetData(copied) && copied.GetText() == "2001:db8::1";
        },
        2));
    EXPECT_TRUE(panel->IsShown());
    panel->say("");
    EXPECT_FALSE(panel->copyButton().IsShown());
}

TEST_F(NotificationPanel, shows_the_last_of_many_lines_and_not_each) {
    wxString const hidden = wxString::FromUTF8("\xe2\x80\xae"); // turns the direction of writing
    for (int i = 0; i <= 5000; ++i)
        panel->say("connected ip=" + wxString::Format("%d", i) + hidden);
    EXPECT_NE(panel->text(), "VPN_GIVENIP 5000") << "each was drawn";
    EXPECT_TRUE(eventually([&] { return panel->text() == "VPN_GIVENIP 5000"; }, 1));
}

TEST_F(NotificationPanel, comes_up_behind_no_dialog_but_after_it) {
    panel->stayBehind(true);
    panel->say("init");
    EXPECT_FALSE(panel->IsShown());
    EXPECT_FALSE(panel->HasFlag(wxSTAY_ON_TOP));
    panel->stayBehind(false);
    EXPECT_TRUE(panel->IsShown());
    panel->stayBehind(true);
    EXPECT_TRUE(panel->IsShown()) << "it may carry the menu";
    panel->stayBehind(false);
    EXPECT_TRUE(panel->HasFlag(wxSTAY_ON_TOP));
}

TEST_F(NotificationPanel, carries_the_menu_until_it_need_not) {
    panel->carryMenu(&icon);
    EXPECT_TRUE(panel->IsShown());
    panel->Close();
    EXPECT_TRUE(isHidden());
    panel->say("init");
    EXPECT_TRUE(panel->IsShown());
    panel->carryMenu(nullptr);
    EXPECT_TRUE(panel->IsShown());
    panel->say("");
    panel->reset();
    panel->carryMenu(&icon);
    panel->carryMenu(nullptr);
    EXPECT_TRUE(isHidden()) << "has nothing to say";
}

TEST_F(NotificationPanel, its_menu_is_opened_once_by_each_way_and_escape_puts_the_panel_away) {
    panel->carryMenu(&icon);
    wxUIActionSimulator user;
    std::function<void()> answer = [&] { user.Char(WXK_ESCAPE); };
    wxTimer answers;
    answers.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
        if (MenuLoop::isRunning())
            answer();
    });
    answers.Start(200);
    std::function<void()> const ways[] = {
        [&] { click(*panel); },
        [&] { click(panel->label()); },
        [&] { click(*panel, wxMOUSE_BTN_RIGHT); },
        [&] { click(panel->label(), wxMOUSE_BTN_RIGHT); },
        [&] { click(panel->opener()); },
        [&] { user.Char(WXK_MENU); },
        [&] { user.Char(WXK_F10, wxMOD_SHIFT); },
        [&] { user.Char(WXK_RETURN); }, // on the button, which has the focus
    };
    for (auto const& open : ways) {
        icon.menus = 0;
        open();
        EXPECT_TRUE(eventually([&] { return icon.menus > 0 && !MenuLoop::isRunning(); }, 5)) << &open - ways;
        EXPECT_FALSE(eventually([&] { return icon.menus > 1; }, 0.4)) << &open - ways;
    }
    EXPECT_TRUE(panel->IsShown());
    NestedLoops const loops;
    icon.menus = 0;
    whenModal([&](wxDialog& dialog) {
        dialog.Move(0, 0); // there is nobody else to place it
        answer = [&] {
            user.Char(WXK_DOWN);
            user.Char(WXK_RETURN);
        };
        click(*panel);
        EXPECT_TRUE(eventually([&] { return icon.chosen == menuSettings; }, 2))
            << "dead while a dialog is open";
        dialog.EndModal(wxID_CANCEL);
    });
    wxDialog(panel, wxID_ANY, "Settings").ShowModal(); // as one of a hidden window while the panel is active
    panel->SetFocus();
    user.Char(WXK_ESCAPE);
    EXPECT_TRUE(isHidden());
}

} // namespace quillon::test
