#include "tarvikclient/gui/logwindowparts.h"

#include "tarvikclient/gui/platform/accessibility.h"

#include <wx/intl.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace quillon {

wxTextCtrl* makeLogText(wxWindow* parent, wxString const& name) {
    auto* const text = new wxTextCtrl(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                                      wxTE_MULTILINE | wxTE_READONLY | wxTE_DONTWRAP | wxTE_NOHIDESEL);
    text->SetFont(wxFont(wxFontInfo(text->GetFont().GetPointSize()).Family(wxFONTFAMILY_TELETYPE)));
    text->SetMinSize(parent->FromDIP(wxSize(300, 120)));
    setAccessibleName(*text, name);
    return text;
}

wxStaticText* makeLogHint(wxWindow* parent, wxString const& path, int width) {
    // TRANSLATORS: stands above the empty text field.
    wxString const text = path.empty() ? _("LOGS_NOWHERE") : _("LOGS_EMPTY");
    auto* const hint = new wxStaticText(parent, wxID_ANY, text);
    hint->Wrap(width);
    return hint;
}

wxStaticText* makeLogPlace(wxWindow* parent, wxString const& path) {
    // TRANSLATORS: below the log; {path} is where the file is.
    wxString text = _("LOGS_FILE");
    text.Replace("{path}", path);
    auto* const place = new wxStaticText(parent, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                                         wxST_ELLIPSIZE_MIDDLE);
    place->SetMinSize(wxSize(1, place->GetCharHeight()));
    place->SetLabelText(text);
    place->SetToolTip(path);
    place->Show(!path.empty());
    return place;
}

} // namespace quillon
