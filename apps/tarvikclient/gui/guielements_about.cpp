#include "tarvikclient/gui/guielements.h"

#include "tarvikclient/gui/artprovider.h"
#include "tarvikclient/gui/dialoglayout.h"
#include "tarvikclient/gui/platform/accessibility.h"
#include "tarvikclient/gui/platform/textfield.h"

#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/intl.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace quillon {

namespace {

// In characters, and lines.
constexpr int lineWidth = 48;
constexpr int visibleLicences = 4;

/// A text to be read and copied, with its label above.
wxTextCtrl* addFact(wxWindow* parent, wxSizer& rows, wxString const& label, long style = 0) {
    Distances const space(*parent);
    auto* const title = new wxStaticText(parent, wxID_ANY, label);
    auto* const text =
        new wxTextCtrl(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxTE_READONLY | style);
    setLabelOf(*text, *title);
    rows.Add(title, wxSizerFlags().Border(wxTOP, space.margin));
    rows.Add(text, wxSizerFlags().Expand().Border(wxTOP, space.gap / 2));
    return text;
}

} // namespace

AboutDialog::AboutDialog(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, _("TarvikClient"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE) {
    SetIcons(programIcons());
    Distances const space(*this);
    contents = new ScrolledContents(this);
    auto* const rows = new wxBoxSizer(wxVERTICAL);
    addIdentity(*rows);
    addFacts(*rows);
    auto* const inner = new wxBoxSizer(wxVERTICAL);
    inner->Add(rows, wxSizerFlags(1).Expand().Border(wxALL, 2 * space.margin));
    contents->SetSizer(inner);
    auto* const close = new wxButton(this, wxID_CLOSE);
    auto* const outer = new wxBoxSizer(wxVERTICAL);
    outer->Add(contents, wxSizerFlags(1).Expand());
    outer->Add(close, wxSizerFlags().Centre().Border(wxBOTTOM, 2 * space.margin));
    SetSizer(outer);
    close->SetDefault();
    close->SetFocus();
    SetEscapeId(wxID_CLOSE);
    close->Bind(wxEVT_BUTTON, &AboutDialog::onClose, this);
}

void AboutDialog::addIdentity(wxSizer& rows) {
    Distances const space(*this);
    wxBitmap const logo = wxArtProvider::GetBitmap("tarvik-logo", wxART_MESSAGE_BOX);
    rows.Add(new wxStaticBitmap(contents, wxID_ANY, logo), wxSizerFlags().Centre());
    auto* const name = new wxStaticText(contents, wxID_ANY, _("TarvikClient"));
    name->SetFont(wxFont(23, wxFONTFAMILY_DEFAULT, wxFONTSTYLE_NORMAL, wxFONTWEIGHT_NORMAL));
    name->SetMinSize(name->GetTextExtent(name->GetLabelText())); // GTK applies a font when the text is shown
    rows.Add(name, wxSizerFlags().Centre().Border(wxTOP, space.margin));
    version = new wxStaticText(contents, wxID_ANY, _("0.0.0.0"));
    rows.Add(version, wxSizerFlags().Centre().Border(wxTOP, space.gap / 2));
    auto* const line = new wxStaticText(contents, wxID_ANY, _("ABOUT_LINE"), wxDefaultPosition, wxDefaultSize,
                                        wxALIGN_CENTRE_HORIZONTAL);
    line->Wrap(lineWidth * GetCharWidth());
    rows.Add(line, wxSizerFlags().Centre().Border(wxTOP, 2 * space.margin));
}

void AboutDialog::addFacts(wxSizer& rows) {
    // TRANSLATORS: stands above the path of the log file.
    logPlace = addFact(contents, rows, _("ABOUT_LOG"));
    logPlace->SetMinSize(wxSize(lineWidth * GetCharWidth(), heightOfField(*logPlace)));
    // TRANSLATORS: stands above a list of libraries and the names of their licences.
    licences = addFact(contents, rows, _("ABOUT_LICENCES"), wxTE_MULTILINE);
    licences->SetMinSize(wxSize(lineWidth * GetCharWidth(), (visibleLicences + 1) * GetCharHeight()));
}

void AboutDialog::onClose(wxCommandEvent&) {}

} // namespace quillon
