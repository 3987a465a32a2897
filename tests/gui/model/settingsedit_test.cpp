#include "tarvikclient/gui/model/settingsedit.h"

#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <clocale>

namespace quillon {

namespace {

SettingsEdit domains(std::initializer_list<char const*> names) {
    SettingsEdit edit;
    for (char const* const name : names)
        edit.domains.Add(wxString::FromUTF8(name));
    return edit;
}

TEST(SettingsEdit, texts_that_the_file_would_change_are_found_wherever_they_stand_and_not_logged) {
    test::LogCapture const log;
    auto const fault = [](SettingsEdit const& edit) { return edit.findFault().field; };
    std::setlocale(LC_CTYPE, "C");
    wxString const beyondTheCLibrary = wxString::FromUTF8("gar\xc3\xa7on");
    SettingsFault const found = SettingsEdit{{}, beyondTheCLibrary, {}}.findFault();
    EXPECT_EQ(found.field, SettingsFault::password);
    EXPECT_EQ(found.reason, SettingsFault::letters);
    ASSERT_TRUE(std::setlocale(LC_CTYPE, "C.UTF-8"));
    EXPECT_EQ(fault({{}, beyondTheCLibrary, {}}), SettingsFault::none);
    for (char const* const text :
         {"a<secret", "<![CDATA[x]]>", "<!-- x -->", "&amp;", "&#65;", "secret</password>"}) {
        SettingsEdit const list = domains({"a.example", text, "<"});
        EXPECT_EQ(fault({text, {}, {}}), SettingsFault::login) << text;
        EXPECT_EQ(fault({{}, text, {}}), SettingsFault::password) << text;
        EXPECT_EQ(fault(list), SettingsFault::domain) << text;
        EXPECT_EQ(list.findFault().index, 1u) << text;
        EXPECT_EQ(list.findFault().reason, SettingsFault::markup) << text;
    }
    for (char const* const text : {"plain & simple; \"'>", "50% & more", "&unknown; &#xyz;"})
        EXPECT_EQ(fault({text, text, domains({text}).domains}), SettingsFault::none) << text;
    std::setlocale(LC_CTYPE, "C");
    EXPECT_FALSE(log.contains("secret")) << log.text();
}

} // namespace

} // namespace quillon
