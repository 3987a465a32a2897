#include "tarvikclient/gui/guielements.h"

#include "tarvikclient/gui/artprovider.h"
#include "tarvikclient/gui/dialoglayout.h"

#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/intl.h>
#include <wx/listbox.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace quillon {

namespace {

wxSize const leastSize(418, 286);
// Explicit, because a list would otherwise be as wide as its longest entry, and measuring them all takes
// time.
wxSize const leastListSize(240, 130);
// Where texts are wrapped; a label beside a field leaves room for that.
constexpr int textWidth = 380;
constexpr int labelWidth = 240;
constexpr int warningWidth = 352; // beside a picture

wxTextCtrl* makeField(wxWindow* parent, long style = 0) {
    auto* const field = new wxTextCtrl(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, style);
    field->SetMinSize(wxSize(parent->FromDIP(leastListSize).x, field->GetBestSize().y));
    return field;
}

wxStaticText* makeWrapped(wxWindow* parent, wxString const& text, int width) {
    auto* const control = new wxStaticText(parent, wxID_ANY, text);
    control->Wrap(parent->FromDIP(width));
    return control;
}

wxSizer* makeWarning(wxWindow* parent) {
    wxBitmap const picture = wxArtProvider::GetBitmap(wxART_WARNING, wxART_MENU);
    Distances const space(*parent);
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(new wxStaticBitmap(parent, wxID_ANY, picture), wxSizerFlags().Top());
    row->AddSpacer(space.gap);
    // TRANSLATORS: stands below the list of the domains whose certificates are not checked.
    row->Add(makeWrapped(parent, _("SETTINGS_SSL_NOCHECK_WARNING"), warningWidth),
             wxSizerFlags(1).CentreVertical());
    return row;
}

} // namespace

ConfigurationDialog::ConfigurationDialog(wxWindow* parent)
    // Without a parent of its own a dialog would take the active window's, and go when that one does.
    : wxDialog(parent, wxID_ANY, _("Settings"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER | (parent ? 0 : wxDIALOG_NO_PARENT)) {
    SetIcons(programIcons());
    Distances const space(*this);
    auto* const groups = new wxBoxSizer(wxVERTICAL);
    groups->Add(makeProxyGroup(), wxSizerFlags().Expand().Border(wxALL, space.margin));
    groups->Add(makeCertificateGroup(),
                wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, space.margin));
    groups->Add(CreateStdDialogButtonSizer(wxOK | wxCANCEL),
                wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, space.margin));
    SetSizer(groups);
    fitToContents();
    centre(*this);
    bindEvents();
}

wxSizer* ConfigurationDialog::makeProxyGroup() {
    Distances const space(*this);
    auto* const group = new wxStaticBoxSizer(wxVERTICAL, this, _("Proxy"));
    wxWindow* const box = group->GetStaticBox();
    useSystemProxy = new wxCheckBox(box, wxID_ANY, _("SETTINGS_PROXY_USE_SYSTEM_PARAMETERS"));
    auto* const fields = new wxFlexGridSizer(2, space.gap, space.margin);
    fields->AddGrowableCol(1);
    // TRANSLATORS: the label of a field.
    fields->Add(makeWrapped(box, _("SETTINGS_PROXY_LOGIN"), labelWidth), wxSizerFlags().CentreVertical());
    fields->Add(proxyLogin = makeField(box), wxSizerFlags().Expand());
    // TRANSLATORS: the label of a field.
    fields->Add(makeWrapped(box, _("SETTINGS_PROXY_PASSWORD"), labelWidth), wxSizerFlags().CentreVertical());
    fields->Add(proxyPassword = makeField(box, wxTE_PASSWORD), wxSizerFlags().Expand());
    group->Add(useSystemProxy, wxSizerFlags().Border(wxALL, space.gap));
    group->Add(fields, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, space.gap));
    return group;
}

wxSizer* ConfigurationDialog::makeCertificateGroup() {
    Distances const space(*this);
    auto* const group = new wxStaticBoxSizer(wxVERTICAL, this, _("SSL"));
    wxWindow* const box = group->GetStaticBox();
    // TRANSLATORS: the label of the field for a domain and of the list below it.
    wxStaticText* const label = makeWrapped(box, _("SETTINGS_SSL_DO_NOT_CHECK_CERTIFICATES"), textWidth);
    certIgnoreDomain = makeField(box, wxTE_PROCESS_ENTER);
    auto* const add = new wxButton(box, wxID_ADD);
    certIgnoreDomainList =
        new wxListBox(box, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0, nullptr, wxLB_EXTENDED | wxLB_SORT);
    certIgnoreDomainList->SetMinSize(FromDIP(leastListSize));
    removeCertIgnoreDomainButton = new wxButton(box, wxID_REMOVE);
    removeCertIgnoreDomainButton->Disable();

    auto* const columns = new wxFlexGridSizer(2, space.gap, space.gap);
    columns->AddGrowableCol(0);
    columns->AddGrowableRow(1);
    columns->Add(certIgnoreDomain, wxSizerFlags().Expand());
    columns->Add(add, wxSizerFlags().Expand());
    columns->Add(certIgnoreDomainList, wxSizerFlags().Expand());
    auto* const below = new wxBoxSizer(wxVERTICAL); // keeps the button at its own height
    below->Add(removeCertIgnoreDomainButton, wxSizerFlags().Expand());
    columns->Add(below, wxSizerFlags().Expand());
    group->Add(label, wxSizerFlags().Border(wxALL, space.gap));
    group->Add(columns, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, space.gap));
    group->Add(makeWarning(box), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, space.gap));
    return group;
}

void ConfigurationDialog::bindEvents() {
    certIgnoreDomain->Bind(wxEVT_TEXT_ENTER, &ConfigurationDialog::addCertIgnoreDomain, this);
    Bind(wxEVT_BUTTON, &ConfigurationDialog::addCertIgnoreDomain, this, wxID_ADD);
    certIgnoreDomainList->Bind(wxEVT_LISTBOX, &ConfigurationDialog::onCertIgnoreDomainList, this);
    Bind(wxEVT_BUTTON, &ConfigurationDialog::onRemoveCertIgnoreDomainButton, this, wxID_REMOVE);
}

void ConfigurationDialog::fitToContents() {
    GetSizer()->SetSizeHints(this);
    wxSize least = GetMinSize();
    least.IncTo(FromDIP(leastSize));
    SetMinSize(least);
    wxSize size = GetSize();
    size.IncTo(FromDIP(leastSize));
    SetSize(size);
}

void ConfigurationDialog::addCertIgnoreDomain(wxCommandEvent&) {}

void ConfigurationDialog::onCertIgnoreDomainList(wxCommandEvent&) {}

void ConfigurationDialog::onRemoveCertIgnoreDomainButton(wxCommandEvent&) {}

} // namespace quillon
