#include "tarvikclient/gui/model/language.h"

#include "tarvikclient/gui/model/wxconversion.h"

#include <gtest/gtest.h>
#include <libintl.h>
#include <wx/init.h>
#include <wx/log.h>
#include <wx/utils.h>

#include <clocale>
#include <future>
#include <map>
#include <optional>
#include <string>

namespace quillon {

namespace {

using Environment = std::map<std::string, wxString>;

/// What a test sets in the process goes with it, but for the environment.
class LanguageTest : public testing::Test {
protected:
    ~LanguageTest() override {
        m_locale.reset();
        wxTranslations::Set(nullptr);
        dropThreadsLocale();
        delete wxLog::SetActiveTarget(m_previousLog);
    }

    /// As at the start of a process with these variables alone.
    void init(int language, Environment const& environment = {{"LC_ALL", "C"}}) {
        for (char const* const name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"})
            wxUnsetEnv(name);
        for (auto const& [name, value] : environment)
            wxSetEnv(name, value);
        dropThreadsLocale();
        initLanguage(m_locale.emplace(), language);
    }
    std::string complaints() const { return m_log->GetBuffer().utf8_string(); }

private:
    static void dropThreadsLocale() {
        if (locale_t const used = uselocale(LC_GLOBAL_LOCALE); used != LC_GLOBAL_LOCALE)
            freelocale(used);
    }

    wxInitializer m_toolkit;
    wxLogBuffer* m_log = new wxLogBuffer;
    wxLog* m_previousLog = wxLog::SetActiveTarget(m_log);
    std::optional<wxLocale> m_locale;
};

} // namespace

TEST_F(LanguageTest, the_language_asked_for_translates_texts_and_stock_labels_without_a_locale) {
    struct {
        char const *code, *disconnected, *cancel;
    } const cases[] = {{"fr", "Déconnecté", "&Annuler"},
                       {"en", "Disconnected", "&Cancel"},
                       {"de", "Verbindung getrennt", "&Abbrechen"},
                       {"es", "Desconectado", "&Cancelar"}};
    for (auto const& [code, disconnected, cancel] : cases) {
        init(languageOfCode(code), {{"LC_ALL", "pl_PL.UTF-8"}, {"LANGUAGE", "es:de"}});
        EXPECT_EQ(_("VPN_STOPPED").utf8_string(), disconnected);
        EXPECT_EQ(_("&Cancel").utf8_string(), cancel);
    }
    EXPECT_EQ(complaints(), "");
}

TEST_F(LanguageTest, the_systems_language_is_the_environments) {
    struct {
        Environment environment;
        char const* disconnected;
    } const cases[] = {{{{"LC_ALL", "C"}}, "Disconnected"},
                       {{{"LC_ALL", "de_AT.UTF-8"}}, "Verbindung getrennt"},
                       {{{"LC_MESSAGES", "fr_CA"}, {"LANG", "de_DE.UTF-8"}}, "Déconnecté"},
                       {{{"LC_MESSAGES", ""}, {"LANG", "es_MX.UTF-8"}}, "Desconectado"},
                       {{{"LC_ALL", "de_DE.UTF-8"}, {"LANGUAGE", "pl:fr_BE:de"}}, "Déconnecté"},
                       {{{"LC_ALL", "de_DE.UTF-8"}, {"LANGUAGE", "en_GB.UTF-8"}}, "Disconnected"},
                       {{{"LC_ALL", "es_ES.UTF-8"}, {"LANGUAGE", "pl"}}, "Desconectado"},
                       {{{"LC_ALL", "pl_PL.UTF-8"}}, "Disconnected"},
                       {{{"LC_ALL", "nonsense"}}, "Disconnected"}};
    for (auto const& [environment, disconnected] : cases) {
        init(wxLANGUAGE_DEFAULT, environment);
        EXPECT_EQ(_("VPN_STOPPED").utf8_string(), disconnected);
    }
    EXPECT_EQ(complaints(), "");
}

TEST_F(LanguageTest, without_a_catalogue_keys_stay_and_nobody_is_troubled) {
    class NoCatalogues final : public wxTranslationsLoader {
        wxMsgCatalog* LoadCatalog(wxString const&, wxString const&) override { return nullptr; }
        wxArrayString GetAvailableTranslations(wxString const&) const override { return {}; }
    };
    wxTranslations::Set(new wxTranslations);
    wxTranslations::Get()->SetLoader(new NoCatalogues);
    init(wxLANGUAGE_GERMAN);
    EXPECT_EQ(_("VPN_STOPPED").utf8_string(), "VPN_STOPPED");
    EXPECT_EQ(complaints(), "");
}

TEST_F(LanguageTest, any_thread_keeps_the_letters_of_a_typed_password_and_writes_numbers_for_machines) {
    init(wxLANGUAGE_GERMAN, {{"LC_ALL", "C.UTF-8"}});
    auto const bytes = [] { return wxToQuillonString(wxString::FromUTF8("Grüße€")); };
    EXPECT_EQ(bytes(), "Grüße€");
    EXPECT_EQ(std::async(std::launch::async, bytes).get(), "Grüße€");
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}

TEST_F(LanguageTest, the_desktops_own_texts_follow_on_this_thread_alone) {
    if (!wxFileExists("/usr/share/locale/de/LC_MESSAGES/gtk30.mo"))
        GTEST_SKIP() << "GTK's own texts are not installed";
    // GTK has Polish texts, the interface has none.
    init(wxLANGUAGE_DEFAULT, {{"LC_ALL", "C.UTF-8"}, {"LANGUAGE", "pl:de"}});
    auto const cancel = [] { return std::string(dgettext("gtk30", "_Cancel")); };
    EXPECT_EQ(cancel(), "_Abbrechen");
    EXPECT_EQ(std::async(std::launch::async, cancel).get(), "_Cancel");
}

} // namespace quillon
