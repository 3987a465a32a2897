#include "tarvikclient/gui/language.h"

#include "tarvikclient/gui/conversion.h"

#include <gtest/gtest.h>
#include <wx/init.h>
#include <wx/log.h>
#include <wx/utils.h>
#include <wx/xlocale.h>

#include <libintl.h>

#include <array>
#include <clocale>
#include <future>
#include <map>
#include <optional>
#include <string>

namespace quillon {

namespace {

using Environment = std::map<char const*, char const*>;

/// The environment's languages are the test's alone, and what it set in the process goes with it.
class LanguageTest : public testing::Test {
protected:
    LanguageTest() {
        for (Variable& variable : m_variables) {
            variable.wasSet = wxGetEnv(variable.name, &variable.value);
            wxUnsetEnv(variable.name);
        }
        wxSetEnv("LC_ALL", "C");
    }
    ~LanguageTest() override {
        m_locale.reset();
        wxTranslations::Set(nullptr);
        dropThreadsLocale();
        for (Variable const& variable : m_variables)
            variable.wasSet ? wxSetEnv(variable.name, variable.value) : wxUnsetEnv(variable.name);
        delete wxLog::SetActiveTarget(m_previousLog);
    }

    /// As at the start of a process with such an environment.
    void init(int language, Environment const& environment = {}) {
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

    struct Variable {
        char const* name;
        wxString value = {};
        bool wasSet = false;
    };

    wxInitializer m_toolkit;
    wxLogBuffer* m_log = new wxLogBuffer;
    wxLog* m_previousLog = wxLog::SetActiveTarget(m_log);
    std::array<Variable, 4> m_variables = {{{"LANGUAGE"}, {"LC_ALL"}, {"LC_MESSAGES"}, {"LANG"}}};
    std::optional<wxLocale> m_locale;
};

/// As it is where the program's files were not installed.
class NoCatalogues final : public wxTranslationsLoader {
public:
    wxMsgCatalog* LoadCatalog(wxString const&, wxString const&) override { return nullptr; }
    wxArrayString GetAvailableTranslations(wxString const&) const override { return {}; }
};

} // namespace

TEST_F(LanguageTest, aCodeIsKnownInLowerCaseOnly) {
    EXPECT_EQ(languageOfCode("fr"), wxLANGUAGE_FRENCH);
    EXPECT_EQ(languageOfCode("en"), wxLANGUAGE_ENGLISH);
    EXPECT_EQ(languageOfCode("de"), wxLANGUAGE_GERMAN);
    EXPECT_EQ(languageOfCode("es"), wxLANGUAGE_SPANISH);
    for (char const* const other : {"", "FR", "pt", "f", "fra", "fr_FR"})
        EXPECT_EQ(languageOfCode(other), wxLANGUAGE_DEFAULT) << other;
}

TEST_F(LanguageTest, textsAndStockLabelsAreTranslatedWithoutALocale) {
    struct {
        char const *code, *disconnected, *cancel;
    } const cases[] = {{"fr", "Déconnecté", "&Annuler"},
                       {"en", "Disconnected", "&Cancel"},
                       {"de", "Verbindung getrennt", "&Abbrechen"},
                       {"es", "Desconectado", "&Cancelar"}};
    for (auto const& [code, disconnected, cancel] : cases) {
        init(languageOfCode(code));
        EXPECT_EQ(_("VPN_STOPPED").utf8_string(), disconnected);
        EXPECT_EQ(_("&Cancel").utf8_string(), cancel);
    }
    EXPECT_EQ(complaints(), "");
}

TEST_F(LanguageTest, theSystemsLanguageIsTheEnvironments) {
    struct {
        Environment environment;
        char const* disconnected;
    } const cases[] = {{{{"LC_ALL", "C"}}, "Disconnected"},
                       {{{"LC_ALL", "de_AT.UTF-8"}}, "Verbindung getrennt"},
                       {{{"LC_ALL", ""}, {"LC_MESSAGES", "fr_CA"}, {"LANG", "de_DE.UTF-8"}}, "Déconnecté"},
                       {{{"LC_ALL", ""}, {"LC_MESSAGES", ""}, {"LANG", "es_MX.UTF-8"}}, "Desconectado"},
                       {{{"LC_ALL", "de_DE.UTF-8"}, {"LANGUAGE", "pl:fr_BE:de"}}, "Déconnecté"},
                       {{{"LC_ALL", "de_DE.UTF-8"}, {"LANGUAGE", "en_GB.UTF-8"}}, "Disconnected"},
                       {{{"LC_ALL", "es_ES.UTF-8"}, {"LANGUAGE", "pl"}}, "Desconectado"},
                       {{{"LC_ALL", "pl_PL.UTF-8"}}, "Disconnected"},
                       {{{"LC_ALL", "nonsense"}}, "Disconnected"}};
    for (auto const& [environment, disconnected] : cases) {
        wxUnsetEnv("LANGUAGE");
        init(wxLANGUAGE_DEFAULT, environment);
        EXPECT_EQ(_("VPN_STOPPED").utf8_string(), disconnected);
    }
    EXPECT_EQ(complaints(), "");
}

TEST_F(LanguageTest, aLanguageThatIsAskedForGoesBeforeTheEnvironments) {
    init(wxLANGUAGE_FRENCH, {{"LC_ALL", "de_DE.UTF-8"}, {"LANGUAGE", "es"}});
    EXPECT_EQ(_("Quit").utf8_string(), "Quitter");
}

TEST_F(LanguageTest, withoutACatalogueKeysStayAndNobodyIsTroubled) {
    auto* const translations = new wxTranslations;
    translations->SetLoader(new NoCatalogues);
    wxTranslations::Set(translations);
    init(wxLANGUAGE_GERMAN);
    EXPECT_EQ(_("VPN_STOPPED").utf8_string(), "VPN_STOPPED");
    EXPECT_EQ(complaints(), "");
}

TEST_F(LanguageTest, anyThreadKeepsTheLettersOfATypedPassword) {
    init(wxLANGUAGE_GERMAN);
    auto const bytes = [] { return wxToQuillonString(wxString::FromUTF8("Grüße€")); };
    EXPECT_EQ(bytes(), "Grüße€");
    EXPECT_EQ(std::async(std::launch::async, bytes).get(), "Grüße€");
}

TEST_F(LanguageTest, numbersAreWrittenAsMachinesReadThem) {
    init(wxLANGUAGE_DEFAULT, {{"LC_ALL", "C.UTF-8"}});
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}

TEST_F(LanguageTest, desktopsOwnTextsFollowOnThisThreadAlone) {
    if (!wxFileExists("/usr/share/locale/de/LC_MESSAGES/gtk30.mo"))
        GTEST_SKIP() << "GTK's own texts are not installed";
    // GTK has Polish texts, the interface has none.
    init(wxLANGUAGE_DEFAULT, {{"LC_ALL", "C.UTF-8"}, {"LANGUAGE", "pl:de"}});
    auto const cancel = [] { return std::string(dgettext("gtk30", "_Cancel")); };
    EXPECT_EQ(cancel(), "_Abbrechen");
    EXPECT_EQ(std::async(std::launch::async, cancel).get(), "_Cancel");
}

} // namespace quillon
