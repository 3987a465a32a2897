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
    /// Either the file's markup, or letters that the C library's encoding does not have.
    enum Reason { markup, letters };

    Field field = none;
    Reason reason = markup;
    unsigned index = 0; ///< of the domain in its list
};

/// What became of a typed domain.
enum class TypedDomain { blank, taken, refused };

/// The settings as the dialog shows them, and the rules of editing them. A value; one thread at a time.
struct SettingsEdit {
    wxString login; ///< "login@domain", "domain\login" or the login alone
    wxString password;
    wxArrayString domains;

    static SettingsEdit read(ClientLocalConfiguration const& conf);
    void write(ClientLocalConfiguration& conf) const;

    /// Takes what serverNamedBy() finds in the text, the last of `domains` then; what is there already is not
    /// taken twice. Leaves `domains` alone unless it was taken. What has once been stored is not judged.
    TypedDomain addDomain(wxString const& typed, wxString const& gateway);
    /// Removes what stands at `indexes`, which are in ascending order.
    void removeDomains(wxArrayInt const& indexes);

    /// The first text that would come back from the settings file as another one, or that the C library's
    /// encoding cannot express.
    SettingsFault findFault() const;
};

} // namespace quillon
