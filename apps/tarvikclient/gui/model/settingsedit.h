// What the settings dialog decides, without its window.
#pragma once

#include <wx/arrstr.h>
#include <wx/dynarray.h>
#include <wx/string.h>

namespace quillon {

class ClientLocalConfiguration;

/// A text of the settings that cannot be kept as it was typed.
struct SettingsFault {
    enum Field { none, login, password, domain };

    Field field = none;
    unsigned index = 0; ///< of the domain in its list
};

/// The settings as the dialog shows them, and the rules of editing them. A value; one thread at a time.
struct SettingsEdit {
    wxString login; ///< "login@domain", "domain\login" or the login alone
    wxString password;
    wxArrayString domains;

    static SettingsEdit read(ClientLocalConfiguration const& conf);
    void write(ClientLocalConfiguration& conf) const;

    /// Takes a typed domain without the white space behind it; one that is there already, in the same
    /// letters, is not taken twice. False when nothing but white space was typed.
    bool addDomain(wxString const& typed);
    /// Removes what stands at `indexes`, which are in ascending order.
    void removeDomains(wxArrayInt const& indexes);

    /// The first text that would come back from the settings file as another one, or that the C library's
    /// encoding cannot express.
    SettingsFault findFault() const;
};

} // namespace quillon
