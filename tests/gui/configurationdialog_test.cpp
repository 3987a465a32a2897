#include "tarvikclient/gui/configurationdialog.h"

#include "gui/windowtest.h"
#include "tarvikclient/clientlocalconfiguration.h"

#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/listbox.h>
#include <wx/textctrl.h>
#include <wx/uiaction.h>

namespace quillon {

namespace {

/// The dialog, its controls within reach, used with a real keyboard and mouse.
class Dialog : public TarvikClientConfigurationDialog {
public:
    Dialog() : TarvikClientConfigurationDialog(nullptr) {}

    using ConfigurationDialog::certIgnoreDomain;
    using ConfigurationDialog::certIgnoreDomainList;
    using ConfigurationDialog::proxyLogin;
    using ConfigurationDialog::proxyPassword;
    using ConfigurationDialog::removeCertIgnoreDomainButton;

    bool says(char const* key) {
        wxWindow const* const text = FindWindowByLabel(key, this);
        return text && text->IsShownOnScreen();
    }
    wxString list() const { return wxJoin(certIgnoreDomainList->GetStrings(), '|'); }
    void type(wxTextCtrl* field, wxString const& text) {
        wxString const whole = field->GetValue() + text;
        focus(field);
        field->SetInsertionPointEnd();
        m_user.Text(text.utf8_str());
        EXPECT_TRUE(eventually([&] { return field->GetValue() == whole; })) << field->GetValue();
    }
    void enter(wxString const& domain) {
        type(certIgnoreDomain, domain);
        press(WXK_RETURN, 0, [&] { return certIgnoreDomain->IsEmpty(); });
    }
    /// Presses a key and awaits what comes of it: the keyboard's events take their way through the server.
    void press(int key, int modifiers, std::function<bool()> const& effect) {
        m_user.Char(key, modifiers);
        EXPECT_TRUE(eventually(effect)) << "key " << key;
    }
    void focus(wxWindow* control) {
        control->SetFocus();
        EXPECT_TRUE(eventually([&] { return control->HasFocus(); }));
    }

private:
    wxUIActionSimulator m_user;
};

void fill(Dialog& dialog, std::initializer_list<char const*> domains) {
    List<String> list;
    for (char const* const domain : domains)
        list.add(domain);
    ClientLocalConfiguration conf;
    conf.setSslCertIgnoreDomains(list);
    conf.setProxyCredentials(Credentials("user", "secret", "domain"));
    dialog.readConfiguration(conf);
}

/// Shows the dialog, lets `act` use it, and gives what ShowModal() returned.
int shown(Dialog& dialog, std::function<void()> act) {
    whenModal([&](wxDialog&) {
        act();
        if (dialog.IsModal())
            dialog.EndModal(-2);
    });
    return dialog.ShowModal();
}

TEST(ConfigurationDialog, enter_and_the_add_button_add_a_domain_once) {
    Dialog dialog;
    fill(dialog, {"c.example", "b.example"});
    EXPECT_EQ(dialog.proxyLogin->GetValue(), "user@domain");
    int const answer = shown(dialog, [&] {
        for (char const* const typed : {"gw.example ", "gw.example"}) {
            dialog.enter(typed);
            EXPECT_EQ(dialog.list(), "b.example|c.example|gw.example");
        }
        dialog.type(dialog.certIgnoreDomain, "a.example");
        press(dialog, wxID_ADD);
        EXPECT_EQ(dialog.list(), "a.example|b.example|c.example|gw.example");
        dialog.type(dialog.certIgnoreDomain, "  ");
        dialog.press(WXK_RETURN, 0, [] { return true; });
        dialog.type(dialog.certIgnoreDomain, "x"); // the key before it has been handled by then
        EXPECT_TRUE(dialog.IsModal()) << "Enter in this field must not end the dialog";
        dialog.press(WXK_ESCAPE, 0, [&] { return !dialog.IsModal(); });
    });
    EXPECT_EQ(answer, wxID_CANCEL);
    ClientLocalConfiguration conf;
    dialog.writeConfiguration(conf);
    EXPECT_EQ(conf.getProxyCredentials(), Credentials("user", "secret", "domain"));
    EXPECT_EQ(conf.getSslCertIgnoreDomains().size(), 4u);
}

TEST(ConfigurationDialog, the_selected_domains_are_removed_and_the_button_follows_the_selection) {
    Dialog dialog;
    fill(dialog, {"a", "b", "c", "d", "e"});
    shown(dialog, [&] {
        wxWindow* const remove = dialog.removeCertIgnoreDomainButton;
        EXPECT_FALSE(remove->IsEnabled());
        dialog.focus(dialog.certIgnoreDomainList);
        auto const isSelected = [&](int index) {
            return [&, index] { return dialog.certIgnoreDomainList->IsSelected(index); };
        };
        dialog.press(WXK_DOWN, 0, isSelected(0));
        dialog.press(WXK_DOWN, 0, isSelected(1));
        EXPECT_TRUE(remove->IsEnabled());
        for (int steps = 0; steps < 2; ++steps)
            dialog.press(WXK_DOWN, wxMOD_CONTROL, [] { return true; });
        dialog.press(WXK_SPACE, wxMOD_CONTROL, isSelected(3));
        dialog.press(WXK_DELETE, 0, [&] { return dialog.list() == "a|c|e"; });
        dialog.press(WXK_DELETE, 0, [] { return true; });
        dialog.press(WXK_DOWN, 0, isSelected(0));
        EXPECT_EQ(dialog.list(), "a|c|e") << "nothing was selected";
        clickOn(*remove, wxMOUSE_BTN_LEFT);
        EXPECT_TRUE(eventually([&] { return dialog.list() == "c|e"; }));
        EXPECT_FALSE(remove->IsEnabled());
        EXPECT_TRUE(eventually([&] { return dialog.certIgnoreDomainList->HasFocus(); }));
    });
}

TEST(ConfigurationDialog, a_text_that_cannot_be_stored_keeps_the_dialog_open_and_gets_the_focus) {
    MessageBoxes messages;
    messages.Register();
    Dialog dialog;
    fill(dialog, {"a.example", "b<c", "d.example"});
    int const answer = shown(dialog, [&] {
        dialog.proxyPassword->SetValue("pass<word");
        press(dialog, wxID_OK);
        ASSERT_EQ(messages.texts.size(), 1u);
        EXPECT_TRUE(eventually([&] { return dialog.proxyPassword->HasFocus(); }));
        dialog.proxyPassword->SetValue("password");
        dialog.press(WXK_RETURN, 0, [&] { return messages.texts.size() == 2; });
        EXPECT_TRUE(dialog.certIgnoreDomainList->HasFocus());
        EXPECT_TRUE(dialog.certIgnoreDomainList->IsSelected(1));
        ASSERT_TRUE(dialog.removeCertIgnoreDomainButton->IsEnabled());
        press(dialog, wxID_REMOVE);
        press(dialog, wxID_OK);
    });
    EXPECT_EQ(answer, wxID_OK);
    EXPECT_EQ(messages.texts.size(), 2u);
}

TEST(ConfigurationDialog, ok_adds_what_is_typed_and_refuses_in_place_what_is_no_server) {
    MessageBoxes messages;
    messages.Register();
    Dialog dialog;
    fill(dialog, {"b.example"});
    dialog.setGateway("Gw.Example:443");
    int const answer = shown(dialog, [&] {
        EXPECT_TRUE(eventually([&] { return dialog.proxyLogin->HasFocus(); }));
        dialog.type(dialog.certIgnoreDomain, "host:99999");
        press(dialog, wxID_OK);
        EXPECT_TRUE(dialog.IsModal());
        EXPECT_TRUE(dialog.says("SETTINGS_SSL_DOMAIN_WANTED"));
        EXPECT_TRUE(dialog.certIgnoreDomain->HasFocus());
        dialog.certIgnoreDomain->SetValue("https://gw.example/portal?x");
        EXPECT_FALSE(dialog.says("SETTINGS_SSL_DOMAIN_WANTED"));
        press(dialog, wxID_OK);
    });
    EXPECT_EQ(answer, wxID_OK);
    EXPECT_EQ(dialog.list(), "b.example|Gw.Example:443");
    EXPECT_TRUE(messages.texts.empty());
}

TEST(ConfigurationDialog, what_was_offered_and_not_added_is_asked_about) {
    struct Case {
        int answer, result;
        char const* list;
    };
    for (auto const& [answer, result, list] : {Case{wxID_YES, wxID_OK, "b.example|gw.example"},
                                               {wxID_NO, wxID_OK, "b.example"},
                                               {wxID_CANCEL, -2, "b.example"}}) {
        MessageBoxes messages;
        messages.answer = answer;
        messages.Register();
        Dialog dialog;
        fill(dialog, {"b.example"});
        dialog.offerDomain("gw.example:443");
        EXPECT_EQ(shown(dialog,
                        [&] {
                            EXPECT_TRUE(eventually([&] { return dialog.certIgnoreDomain->HasFocus(); }));
                            press(dialog, wxID_OK);
                        }),
                  result);
        EXPECT_EQ(messages.texts.size(), 1u);
        EXPECT_EQ(dialog.list(), list);
    }
}

TEST(ConfigurationDialog, long_lists_and_texts_stay_on_the_screen) {
    ClientLocalConfiguration conf;
    List<String> list;
    for (int i = 0; i < 10000; ++i)
        list.add(String::copyOf("host" + std::to_string(i * 7919 % 10000) + ".example"));
    list.add(String::copyOf(std::string(1000, 'x')));
    conf.setSslCertIgnoreDomains(list);
    conf.setProxyCredentials(Credentials("u", "p", String::copyOf(std::string(1000, 'd'))));
    Dialog dialog;
    dialog.readConfiguration(conf);
    shown(dialog, [&] {
        EXPECT_LE(dialog.GetSize().x, 700);
        EXPECT_LE(dialog.GetScreenRect().GetBottom(), 900);
        dialog.enter("host.example");
        EXPECT_EQ(dialog.certIgnoreDomainList->GetCount(), 10002u);
        EXPECT_TRUE(dialog.Validate());
        dialog.focus(dialog.certIgnoreDomainList);
        dialog.press('A', wxMOD_CONTROL, [&] { return dialog.removeCertIgnoreDomainButton->IsEnabled(); });
        press(dialog, wxID_REMOVE);
        EXPECT_EQ(dialog.certIgnoreDomainList->GetCount(), 0u);
    });
}

} // namespace

} // namespace quillon
