// The window that asks before the first session with a gateway.
#include "gui/frametest.h"
#include "support/testpolicy.h"
#include "tarvikclient/gui/gatewaydialog.h"
#include "tarvikclient/gui/model/language.h"

#include <wx/app.h>
#include <wx/stattext.h>
#include <wx/uiaction.h>

namespace quillon {

namespace {

wxString withoutBlanks(wxString text) {
    text.Replace("\n", "");
    text.Replace(" ", "");
    return text;
}

/// What the window's texts say, wherever their lines break.
wxString textsOf(wxWindow& window) {
    wxString all;
    for (wxWindow* const child : window.GetChildren()) {
        auto* const text = dynamic_cast<wxStaticText*>(child);
        all += text ? withoutBlanks(text->GetLabelText()) : textsOf(*child);
    }
    return all;
}

http::HostPort gatewayOf(std::string const& name) {
    return *http::HostPort::parse(String::copyOf(name), gatewayPort);
}

/// A main frame under a policy that asks about each gateway.
class GatewayQuestionWindow : public FrameTest {
protected:
    GatewayQuestionWindow() {
        gateway.serve("/mediation", silent(test::Reply::hold));
        policy.write("<gateways><others>ask</others></gateways>");
    }
    void start() {
        makeFrame();
        frame->start(gateway.launchUrl());
    }
    /// Starts a session, does this to the window that asks, and says whether the gateway is then asked.
    bool asksAfter(std::function<void(wxDialog&)> act) {
        auto const before = gateway.server().requests().size();
        whenModal(std::move(act));
        start();
        EXPECT_TRUE(eventually([&] { return !frame || gateway.server().requests().size() > before; }));
        return frame != nullptr;
    }
    std::string remembered() const { return test::readFile(home.file(".Tarvik/gateways.xml")); }

    test::TestPolicy policy;
};

} // namespace

TEST(GatewayDialog, shows_the_whole_name_in_ascii_and_keeps_its_buttons_on_a_small_screen) {
    wxLocale locale;
    initLanguage(locale, wxLANGUAGE_ENGLISH);
    std::string const longest = std::string(60, 'w') + "." + std::string(60, 'w') + "." +
                                std::string(60, 'w') + "." + std::string(57, 'w') + ".evil.example:65535";
    struct {
        std::string name, shown;
    } const cases[] = {
        {"gate.example", "connect this computer to gate.example."},
        {"gate.example:8443", "to gate.example:8443."},
        {"b\xC3\xBC"
         "cher.example",
         "to xn--bcher-kva.example. In its own letters, this name reads b\xC3\xBC"
         "cher.example."},
        {"xn--pypal-4ve.com", "to xn--pypal-4ve.com. The gateway"}, // a Cyrillic letter: ASCII alone
        {longest, longest},
    };
    for (auto const& [name, shown] : cases) {
        TarvikClientGatewayDialog dialog(nullptr, gatewayOf(name));
        dialog.Show();
        wxTheApp->Yield();
        EXPECT_TRUE(textsOf(dialog).Contains(withoutBlanks(wxString::FromUTF8(shown))))
            << textsOf(dialog).utf8_string();
        EXPECT_LE(dialog.GetSize().GetWidth(), 800);
        EXPECT_LE(dialog.GetSize().GetHeight(), 600);
        for (int const id : {wxID_YES, wxID_NO})
            EXPECT_TRUE(dialog.GetClientRect().Contains(wxWindow::FindWindowById(id, &dialog)->GetRect()));
    }
    wxTranslations::Set(nullptr);
}

TEST(GatewayDialog, every_way_out_but_its_yes_is_a_no) {
    struct {
        char const* what;
        std::function<void(wxDialog&)> act;
        bool yes;
    } const ways[] = {
        {"yes", [](wxDialog& dialog) { press(dialog, wxID_YES); }, true},
        {"no", [](wxDialog& dialog) { press(dialog, wxID_NO); }, false},
        {"title bar", [](wxDialog& dialog) { dialog.Close(); }, false},
        {"escape", [](wxDialog&) { wxUIActionSimulator().Char(WXK_ESCAPE); }, false},
        {"enter", [](wxDialog&) { wxUIActionSimulator().Char(WXK_RETURN); }, false},
        {"blank", [](wxDialog&) { wxUIActionSimulator().Char(WXK_SPACE); }, false},
    };
    for (auto const& [what, act, yes] : ways) {
        TarvikClientGatewayDialog dialog(nullptr, gatewayOf("gate.example"));
        whenModal(act);
        EXPECT_EQ(dialog.ShowModal() == wxID_YES, yes) << what;
    }
}

TEST_F(GatewayQuestionWindow, no_ends_the_program_before_any_request_and_is_not_remembered) {
    EXPECT_FALSE(asksAfter([](wxDialog& dialog) { press(dialog, wxID_NO); }));
    EXPECT_TRUE(gateway.server().requests().empty());
    EXPECT_TRUE(dialogs.texts.empty()) << "no message about the user's own decision";
    EXPECT_EQ(remembered(), "");
    EXPECT_FALSE(asksAfter([](wxDialog& dialog) { press(dialog, wxID_NO); })) << "asked again";
}

TEST_F(GatewayQuestionWindow, yes_is_remembered_for_this_gateway_as_long_as_the_policy_asks) {
    EXPECT_TRUE(asksAfter([](wxDialog& dialog) { press(dialog, wxID_YES); }));
    EXPECT_NE(remembered().find("<gateway>" + gateway.server().authority() + "</gateway>"),
              std::string::npos);
    frame->stop();
    ASSERT_TRUE(goes());
    int const asked = dialogs.otherDialogs;
    start();
    EXPECT_TRUE(gateway.server().awaitRequests(2));
    EXPECT_EQ(dialogs.otherDialogs, asked);
    frame->stop();
    ASSERT_TRUE(goes());
    policy.write("<gateways><others>refuse</others></gateways>");
    start();
    EXPECT_TRUE(goes());
    EXPECT_EQ(gateway.server().requests().size(), 2u);
}

TEST_F(GatewayQuestionWindow, the_end_of_the_program_is_the_end_of_the_question) {
    struct {
        char const* what;
        std::function<void()> leave;
    } const ways[] = {
        {"stop", [this] { frame->stop(); }},
        {"close", [this] { frame->Close(); }},
        {"forced", [this] { frame->Close(true); }},
        {"display",
         [this] {
             frame->stopWithoutDisplay();
             frame->stop();
         }},
    };
    for (auto const& [what, leave] : ways) {
        EXPECT_FALSE(asksAfter([&](wxDialog&) { leave(); })) << what;
        EXPECT_FALSE(openModalDialog()) << what;
    }
    EXPECT_TRUE(gateway.server().requests().empty());
    EXPECT_TRUE(dialogs.texts.empty());
}

} // namespace quillon
