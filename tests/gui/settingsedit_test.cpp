#include "tarvikclient/gui/settingsedit.h"

#include "support/logcapture.h"
#include "tarvikclient/clientlocalconfiguration.h"

#include <gtest/gtest.h>

#include <clocale>

namespace quillon {

namespace {

/// Texts are converted in the encoding that is set here, until the test ends.
class Encoding {
public:
    explicit Encoding(char const* name) { EXPECT_TRUE(std::setlocale(LC_CTYPE, name)) << name; }
    ~Encoding() { std::setlocale(LC_CTYPE, "C"); }
};

SettingsEdit domains(std::initializer_list<char const*> names) {
    SettingsEdit edit;
    for (char const* const name : names)
        edit.domains.Add(wxString::FromUTF8(name));
    return edit;
}

TEST(SettingsEdit, typed_domains_are_trimmed_behind_and_kept_once) {
    for (char const* const nothing : {"", " \t\n"})
        EXPECT_FALSE(SettingsEdit().addDomain(nothing));
    std::pair<char const*, char const*> const cases[] = {
        {"a.example", "a.example"},
        {"a.example \t\r\n", "a.example"},
        {"A.example", "a.example|A.example"},
        {" a.example", "a.example| a.example"},
    };
    for (auto const& [typed, list] : cases) {
        SettingsEdit edit = domains({"a.example"});
        EXPECT_TRUE(edit.addDomain(typed));
        EXPECT_EQ(wxJoin(edit.domains, '|'), list) << '"' << typed << '"';
    }
}

TEST(SettingsEdit, what_is_written_is_read_again) {
    Encoding const utf8("C.UTF-8");
    wxString const password = wxString::FromUTF8(" p\xc3\xa4ss & w\xe2\x82\xacrd ");
    for (char const* const login : {"", "user", "user@domain"}) {
        SettingsEdit edit = domains({"b.example:8443", " a.example"});
        edit.login = login;
        edit.password = password;
        ClientLocalConfiguration conf;
        edit.write(conf);
        SettingsEdit const again = SettingsEdit::read(conf);
        EXPECT_EQ(again.login, login);
        EXPECT_EQ(again.password, password);
        EXPECT_EQ(again.domains, edit.domains);
        EXPECT_EQ(edit.findFault().field, SettingsFault::none) << login;
    }
}

TEST(SettingsEdit, texts_that_the_file_would_change_are_found_wherever_they_stand_and_not_logged) {
    test::LogCapture const log;
    Encoding const utf8("C.UTF-8");
    auto const fault = [](SettingsEdit const& edit) { return edit.findFault().field; };
    for (char const* const text :
         {"a<secret", "<![CDATA[x]]>", "<!-- x -->", "&amp;", "&#65;", "secret</password>"}) {
        SettingsEdit const list = domains({"a.example", text, "<"});
        EXPECT_EQ(fault({text, {}, {}}), SettingsFault::login) << text;
        EXPECT_EQ(fault({{}, text, {}}), SettingsFault::password) << text;
        EXPECT_EQ(fault(list), SettingsFault::domain) << text;
        EXPECT_EQ(list.findFault().index, 1u) << text;
    }
    for (char const* const text : {"plain & simple; \"'>", "50% & more", "&unknown; &#xyz;"})
        EXPECT_EQ(fault({text, text, domains({text}).domains}), SettingsFault::none) << text;
    EXPECT_FALSE(log.contains("secret")) << log.text();
}

TEST(SettingsEdit, texts_beyond_the_c_librarys_encoding_are_found) {
    SettingsEdit edit;
    edit.password = wxString::FromUTF8("gar\xc3\xa7on");
    EXPECT_EQ(edit.findFault().field, SettingsFault::password);
    Encoding const utf8("C.UTF-8");
    EXPECT_EQ(edit.findFault().field, SettingsFault::none);
}

} // namespace

} // namespace quillon
