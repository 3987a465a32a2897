#include "tarvikclient/gui/configurationdialog.h"

#include <wx/button.h>
#include <wx/intl.h>
#include <wx/listbox.h>
#include <wx/msgdlg.h>
#include <wx/textctrl.h>

#include <algorithm>

namespace quillon {

namespace {

/// A label as the name of its field.
wxString nameOf(wxString const& label) {
    wxString name = wxControl::RemoveMnemonics(label).Trim();
    if (name.EndsWith(":", &name))
        name.Trim();
    return name;
}

wxString shortened(wxString const& text) {
    constexpr std::size_t longest = 60;
    return text.length() > longest ? text.Left(longest) + wxString::FromUTF8("\xe2\x80\xa6") : text;
}

} // namespace

TarvikClientConfigurationDialog::TarvikClientConfigurationDialog(wxWindow* parent)
    : ConfigurationDialog(parent) {}

void TarvikClientConfigurationDialog::readConfiguration(ClientLocalConfiguration& conf) {
    SettingsEdit const edit = SettingsEdit::read(conf);
    proxyLogin->ChangeValue(edit.login);
    proxyPassword->ChangeValue(edit.password);
    certIgnoreDomainList->Set(edit.domains);
    updateRemoveButton();
    fitToContents();
}

void TarvikClientConfigurationDialog::offerDomain(wxString const& domain) {
    certIgnoreDomain->ChangeValue(domain);
    certIgnoreDomain->SetFocus();
    certIgnoreDomain->SelectAll();
}

void TarvikClientConfigurationDialog::writeConfiguration(ClientLocalConfiguration& conf) {
    edited().write(conf);
}

bool TarvikClientConfigurationDialog::Validate() {
    SettingsEdit const edit = edited();
    SettingsFault const fault = edit.findFault();
    switch (fault.field) {
    case SettingsFault::none:
        break;
    case SettingsFault::login:
        complain(nameOf(_("SETTINGS_PROXY_LOGIN")));
        proxyLogin->SetFocus();
        return false;
    case SettingsFault::password:
        complain(nameOf(_("SETTINGS_PROXY_PASSWORD")));
        proxyPassword->SetFocus();
        return false;
    case SettingsFault::domain:
        selectDomain(fault.index);
        complain(shortened(edit.domains[fault.index]));
        certIgnoreDomainList->SetFocus();
        return false;
    }
    return ConfigurationDialog::Validate();
}

void TarvikClientConfigurationDialog::addCertIgnoreDomain(wxCommandEvent&) {
    SettingsEdit edit = edited();
    std::size_t const known = edit.domains.size();
    if (!edit.addDomain(certIgnoreDomain->GetValue()))
        return;
    if (edit.domains.size() > known)
        certIgnoreDomainList->EnsureVisible(certIgnoreDomainList->Append(edit.domains.Last()));
    certIgnoreDomain->Clear();
}

void TarvikClientConfigurationDialog::onCertIgnoreDomainList(wxCommandEvent&) {
    updateRemoveButton();
}

void TarvikClientConfigurationDialog::onRemoveCertIgnoreDomainButton(wxCommandEvent&) {
    wxArrayInt selected;
    if (certIgnoreDomainList->GetSelections(selected) == 0)
        return;
    std::sort(selected.begin(), selected.end());
    SettingsEdit edit = edited();
    edit.removeDomains(selected);
    // All at once: for each entry that is deleted by itself the list looks through all the others.
    certIgnoreDomainList->Set(edit.domains);
    if (!edit.domains.empty())
        certIgnoreDomainList->EnsureVisible(std::min(selected[0], static_cast<int>(edit.domains.size()) - 1));
    updateRemoveButton();
}

SettingsEdit TarvikClientConfigurationDialog::edited() const {
    return {proxyLogin->GetValue(), proxyPassword->GetValue(), certIgnoreDomainList->GetStrings()};
}

void TarvikClientConfigurationDialog::updateRemoveButton() {
    wxArrayInt selected;
    bool const any = certIgnoreDomainList->GetSelections(selected) > 0;
    // A disabled button that has the focus would swallow the keys.
    if (!any && removeCertIgnoreDomainButton->HasFocus())
        certIgnoreDomainList->SetFocus();
    removeCertIgnoreDomainButton->Enable(any);
}

void TarvikClientConfigurationDialog::selectDomain(unsigned index) {
    certIgnoreDomainList->SetSelection(wxNOT_FOUND);
    certIgnoreDomainList->SetSelection(static_cast<int>(index));
    certIgnoreDomainList->EnsureVisible(static_cast<int>(index));
    updateRemoveButton();
}

void TarvikClientConfigurationDialog::complain(wxString const& what) {
    // TRANSLATORS: %s is the name of a field, or the domain in question.
    wxString text = _("SETTINGS_NOT_STORABLE");
    text.Replace("%s", what);
    wxMessageDialog(this, text, GetTitle(), wxOK | wxCENTRE | wxICON_WARNING).ShowModal();
}

} // namespace quillon
