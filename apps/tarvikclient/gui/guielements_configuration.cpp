#include "tarvikclient/gui/guielements.h"

#include "tarvikclient/gui/artprovider.h"
#include "tarvikclient/gui/dialoglayout.h"
#include "tarvikclient/gui/platform/accessibility.h"
#include "tarvikclient/gui/platform/textfield.h"

#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/intl.h>
#include <wx/listbox.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace quillon {

namespace {

wxSize const leastSize(418, 286);

// In characters, so that they hold in any font. A list would otherwise be as wide as its longest entry, and
// measuring them all takes time.
constexpr int fieldWidth = 30;
constexpr int listLines = 7;
// Where texts are wrapped; a label beside a field leaves room for that.
constexpr int textWidth = 48;
constexpr int labelWidth = 30;
constexpr int warningWidth = 44; // beside a picture
constexpr int problemWidth = 36; // beside a button

wxTextCtrl* makeField(wxWindow* parent, long style = 0) {
    auto* const field = new wxTextCtrl(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, style);
    field->SetMinSize(wxSize(fieldWidth * parent->GetCharWidth(), heightOfField(*field)));
    return field;
}

/// Beside a field, whatever the number of the label's lines.
wxSizerFlags oneLine() {
    return wxSizerFlags().Align(wxALIGN_CENTRE_VERTICAL).Expand();
}

wxStaticText* makeWrapped(wxWindow* parent, wxString const& text, int characters) {
    auto* const control = new wxStaticText(parent, wxID_ANY, text);
    control->Wrap(characters * parent->GetCharWidth());
    return control;
}

/// In a window of its own, lest the box's title be taken for the label of the next one.
wxStaticBoxSizer* makeGroup(wxWindow* parent, wxString const& title) {
    auto* const window = new wxPanel(parent);
    auto* const group = new wxStaticBoxSizer(wxVERTICAL, window, title);
    window->SetSizer(group);
    return group;
}

/// The label comes first: wxWidgets takes it for that of what is made after it.
wxTextCtrl* addLabelled(wxWindow* box, wxSizer& grid, wxString const& text, long style = 0) {
    wxStaticText* const label = makeWrapped(box, text, labelWidth);
    wxTextCtrl* const field = makeField(box, style);
    setLabelOf(*field, *label);
    grid.Add(label, wxSizerFlags().CentreVertical());
    grid.Add(field, oneLine());
    return field;
}

/// Keeps a button at its own height, whatever the height of what it stands beside.
wxSizer* atTop(wxWindow* button) {
    auto* const cell = new wxBoxSizer(wxVERTICAL);
    cell->Add(button, wxSizerFlags().Expand());
    return cell;
}

/// A text beside its picture.
wxSizer* makeNote(wxWindow* parent, wxArtID const& picture, wxString const& text, int characters) {
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(new wxStaticBitmap(parent, wxID_ANY, wxArtProvider::GetBitmap(picture, wxART_MENU)),
             wxSizerFlags().Top());
    row->AddSpacer(Distances(*parent).gap);
    row->Add(makeWrapped(parent, text, characters), wxSizerFlags(1).CentreVertical());
    return row;
}

} // namespace

ConfigurationDialog::ConfigurationDialog(wxWindow* parent)
    // Without a parent of its own a dialog would take the active window's, and go when that one does.
    : wxDialog(parent, wxID_ANY, _("Settings"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER | (parent ? 0 : wxDIALOG_NO_PARENT)) {
    SetIcons(programIcons());
    Distances const space(*this);
    m_contents = new ScrolledContents(this);
    auto* const groups = new wxBoxSizer(wxVERTICAL);
    groups->Add(makeProxyGroup(), wxSizerFlags().Expand().Border(wxALL, space.margin));
    groups->Add(makeCertificateGroup(), wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT, space.margin));
    m_contents->SetSizer(groups);
    auto* const rows = new wxBoxSizer(wxVERTICAL);
    rows->Add(m_contents, wxSizerFlags(1).Expand());
    rows->Add(CreateStdDialogButtonSizer(wxOK | wxCANCEL),
              wxSizerFlags().Expand().Border(wxALL, space.margin));
    SetSizer(rows);
    fitToContents();
    centre(*this);
    bindEvents();
    proxyLogin->SetFocus();
}

wxWindow* ConfigurationDialog::makeProxyGroup() {
    Distances const space(*this);
    wxStaticBoxSizer* const group = makeGroup(m_contents, _("Proxy"));
    wxWindow* const box = group->GetStaticBox();
    useSystemProxy = new wxCheckBox(box, wxID_ANY, _("SETTINGS_PROXY_USE_SYSTEM_PARAMETERS"));
    auto* const fields = new wxFlexGridSizer(2, space.gap, space.margin);
    fields->AddGrowableCol(1);
    // TRANSLATORS: the label of a field.
    proxyLogin = addLabelled(box, *fields, _("SETTINGS_PROXY_LOGIN"));
    // TRANSLATORS: the label of a field.
    proxyPassword = addLabelled(box, *fields, _("SETTINGS_PROXY_PASSWORD"), wxTE_PASSWORD);
    group->Add(useSystemProxy, wxSizerFlags().Border(wxALL, space.gap));
    group->Add(fields, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, space.gap));
    return box->GetParent();
}

wxWindow* ConfigurationDialog::makeCertificateGroup() {
    Distances const space(*this);
    wxStaticBoxSizer* const group = makeGroup(m_contents, _("SSL"));
    wxWindow* const box = group->GetStaticBox();
    // TRANSLATORS: the label of the field for a domain and of the list below it.
    wxStaticText* const label = makeWrapped(box, _("SETTINGS_SSL_DO_NOT_CHECK_CERTIFICATES"), textWidth);
    certIgnoreDomain = makeField(box, wxTE_PROCESS_ENTER);
    setLabelOf(*certIgnoreDomain, *label);
    auto* const add = new wxButton(box, wxID_ADD);
    makeList(box);
    removeCertIgnoreDomainButton = new wxButton(box, wxID_REMOVE);
    removeCertIgnoreDomainButton->Disable();

    auto* const columns = new wxFlexGridSizer(2, space.gap, space.gap);
    columns->AddGrowableCol(0);
    columns->AddGrowableRow(2);
    columns->Add(certIgnoreDomain, oneLine());
    columns->Add(add, oneLine());
    columns->Add(makeDomainProblem(box));
    columns->AddSpacer(0)->Show(false); // so that the row is none while nothing is wrong
    columns->Add(certIgnoreDomainList, wxSizerFlags().Expand());
    columns->Add(atTop(removeCertIgnoreDomainButton), wxSizerFlags().Expand());
    group->Add(label, wxSizerFlags().Border(wxALL, space.gap));
    group->Add(columns, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, space.gap));
    // TRANSLATORS: stands below the list of the domains whose certificates are not checked.
    group->Add(makeNote(box, wxART_WARNING, _("SETTINGS_SSL_NOCHECK_WARNING"), warningWidth),
               wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, space.gap));
    return box->GetParent();
}

wxSizer* ConfigurationDialog::makeDomainProblem(wxWindow* box) {
    // TRANSLATORS: stands below the field for a domain when what is in there names no server.
    m_domainProblem = makeNote(box, wxART_ERROR, _("SETTINGS_SSL_DOMAIN_WANTED"), problemWidth);
    m_domainProblem->ShowItems(false);
    return m_domainProblem;
}

void ConfigurationDialog::makeList(wxWindow* box) {
    certIgnoreDomainList =
        new wxListBox(box, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0, nullptr, wxLB_EXTENDED | wxLB_SORT);
    certIgnoreDomainList->SetMinSize(wxSize(fieldWidth * GetCharWidth(), listLines * GetCharHeight()));
    // TRANSLATORS: the list's name for those who hear what is on the screen.
    setAccessibleName(*certIgnoreDomainList, _("SETTINGS_SSL_LIST"));
}

void ConfigurationDialog::bindEvents() {
    certIgnoreDomain->Bind(wxEVT_TEXT_ENTER, &ConfigurationDialog::addCertIgnoreDomain, this);
    certIgnoreDomain->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { showDomainProblem(false); });
    Bind(wxEVT_BUTTON, &ConfigurationDialog::addCertIgnoreDomain, this, wxID_ADD);
    certIgnoreDomainList->Bind(wxEVT_LISTBOX, &ConfigurationDialog::onCertIgnoreDomainList, this);
    certIgnoreDomainList->Bind(wxEVT_KEY_DOWN, &ConfigurationDialog::onListKey, this);
    Bind(wxEVT_BUTTON, &ConfigurationDialog::onRemoveCertIgnoreDomainButton, this, wxID_REMOVE);
}

void ConfigurationDialog::fitToContents(bool keepLarger) {
    m_contents->fitWindow(FromDIP(leastSize), keepLarger);
}

void ConfigurationDialog::showDomainProblem(bool show) {
    if (m_domainProblem->AreAnyItemsShown() == show)
        return;
    m_domainProblem->ShowItems(show);
    setAccessibleDescription(*certIgnoreDomain, show ? _("SETTINGS_SSL_DOMAIN_WANTED") : wxString());
    fitToContents(true);
}

void ConfigurationDialog::onListKey(wxKeyEvent& event) {
    int const key = event.GetKeyCode();
    if (event.HasAnyModifiers() || (key != WXK_DELETE && key != WXK_NUMPAD_DELETE))
        return event.Skip();
    wxCommandEvent remove(wxEVT_BUTTON, wxID_REMOVE);
    onRemoveCertIgnoreDomainButton(remove);
}

void ConfigurationDialog::addCertIgnoreDomain(wxCommandEvent&) {}

void ConfigurationDialog::onCertIgnoreDomainList(wxCommandEvent&) {}

void ConfigurationDialog::onRemoveCertIgnoreDomainButton(wxCommandEvent&) {}

} // namespace quillon
