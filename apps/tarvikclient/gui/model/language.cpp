#include "tarvikclient/gui/model/language.h"

#include <langinfo.h>
#include <wx/arrstr.h>
#include <wx/log.h>
#include <wx/translation.h>
#include <wx/utils.h>
#include <wx/xlocale.h> // and the C library's, wherever it has its own

#include <clocale>
#include <cstring>

namespace quillon {

namespace {

constexpr char const* catalogue = "tarvikclient";

/// A key is no text: whoever reads none of our languages gets this one.
constexpr char const* languageForAll = "en";

/// Best first, in the C library's names. By name alone: the system need not have a locale for them.
wxArrayString preferredLanguages(wxTranslations& translations, int language) {
    wxArrayString preferred;
    if (language != wxLANGUAGE_DEFAULT) {
        preferred.Add(wxLocale::GetLanguageCanonicalName(language));
        return preferred;
    }
    // The toolkit looks at LANGUAGE last, and every other program first.
    if (wxString list; wxGetEnv("LANGUAGE", &list))
        preferred = wxSplit(list, ':');
    translations.SetLanguage(wxLANGUAGE_DEFAULT);
    preferred.Add(translations.GetBestTranslation(catalogue));
    return preferred;
}

wxString languageToUse(wxTranslations& translations, int language) {
    wxArrayString const available = translations.GetAvailableTranslations(catalogue);
    for (wxString const& name : preferredLanguages(translations, language)) {
        wxString const locale = name.BeforeFirst('.').BeforeFirst('@');
        for (wxString const& candidate : {locale, locale.BeforeFirst('_')})
            if (available.Index(candidate) != wxNOT_FOUND)
                return candidate;
    }
    return languageForAll;
}

wxTranslations& currentTranslations() {
    if (!wxTranslations::Get())
        wxTranslations::Set(new wxTranslations);
    return *wxTranslations::Get();
}

/// What the session and its modules rely on, whatever the user's locale is.
void settleCLibrary() {
    // Only machines write and read numbers here, in modules and libraries too.
    std::setlocale(LC_NUMERIC, "C");
    // The system's error texts go into the log, where support looks for them.
    std::setlocale(LC_MESSAGES, "C");
    // Typed text reaches the toolkit as bytes of this encoding, and any other would lose letters.
    for (char const* const name : {"C.UTF-8", "en_US.UTF-8"})
        if (std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0 || std::setlocale(LC_CTYPE, name))
            return;
}

/// GTK labels stock buttons, the file dialog and a field's context menu itself, in the C library's language.
/// That is LANGUAGE, except where LC_MESSAGES is "C"; "C.UTF-8" is there even where no locale is installed.
void setDesktopTexts(wxString const& language) {
    wxSetEnv("LANGUAGE", language);
    // For this thread alone: what the session logs is in one language for all users.
    locale_t const base = duplocale(LC_GLOBAL_LOCALE);
    if (locale_t const translated = newlocale(LC_MESSAGES_MASK, "C.UTF-8", base))
        uselocale(translated);
    else
        freelocale(base);
}

} // namespace

int languageOfCode(String const& code) {
    if (code == "fr")
        return wxLANGUAGE_FRENCH;
    if (code == "en")
        return wxLANGUAGE_ENGLISH;
    if (code == "de")
        return wxLANGUAGE_GERMAN;
    if (code == "es")
        return wxLANGUAGE_SPANISH;
    return wxLANGUAGE_DEFAULT;
}

void initLanguage(wxLocale& locale, int language) {
    // That the system lacks a locale or a catalogue is nothing to trouble the user with.
    wxLogNull const quiet;
    locale.Init(language, wxLOCALE_DONT_LOAD_DEFAULT);
    settleCLibrary();

    wxTranslations& translations = currentTranslations();
    wxString const used = languageToUse(translations, language);
    translations.SetLanguage(used);
    // What is added last is searched first: the toolkit's own labels are ours where we have them.
    translations.AddStdCatalog();
    translations.AddCatalog(catalogue);
    setDesktopTexts(used);
}

} // namespace quillon
