#include "tarvikclient/gui/configurationdialog.h"

#include "tarvikclient/gui/dialoglayout.h"

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
    wxString const name = wxControl::RemoveMnemonics(label);
    constexpr wchar_t noBreakSpace = 0xA0; // in French
    std::size_t const last = name.find_last_not_of(wxString(": ") + noBreakSpace);
    return name.Left(last + 1); // none of it where there is nothing else
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

void TarvikClientConfigurationDialog::writeConfiguration(ClientLocalConfiguration& conf) {
    edited().write(conf);
}

void TarvikClientConfigurationDialog::offerDomain(wxString const& domain) {
    m_offered = domain;
    certIgnoreDomain->ChangeValue(domain);
    certIgnoreDomain->SetFocus();
    certIgnoreDomain->SelectAll();
}

bool TarvikClientConfigurationDialog::Validate() {
    SettingsEdit const edit = edited();
    SettingsFault const fault = edit.findFault();
    switch (fault.field) {
    case SettingsFault::none:
        break;
    case SettingsFault::login:
        complain(nameOf(_("SETTINGS_PROXY_LOGIN")), fault.reason);
        proxyLogin->SetFocus();
        return false;
    case SettingsFault::password:
        complain(nameOf(_("SETTINGS_PROXY_PASSWORD")), fault.reason);
        proxyPassword->SetFocus();
        return false;
    case SettingsFault::domain:
        selectDomain(fault.index);
        complain(shortened(edit.domains[fault.index]), fault.reason);
        certIgnoreDomainList->SetFocus();
        return false;
    }
    return finishTyping() && ConfigurationDialog::Validate();
}

bool TarvikClientConfigurationDialog::finishTyping() {
    // Nobody typed what was offered: to give up the protection takes a decision of its own.
    if (m_offered.empty() || certIgnoreDomain->GetValue() != m_offered)
        return addTyped();
    // TRANSLATORS: a question with the answers yes and no. {server} is a server's name.
    wxString text = _("SETTINGS_SSL_ADD_OFFERED");
    text.Replace("{server}", shortened(m_offered));
    wxMessageDialog question(this, text, GetTitle(), wxYES_NO | wxNO_DEFAULT | wxCENTRE | wxICON_WARNING);
    useOwnLabels(question);
    int const answer = question.ShowModal();
    return answer == wxID_NO || (answer == wxID_YES && addTyped());
}

void TarvikClientConfigurationDialog::addCertIgnoreDomain(wxCommandEvent&) {
    addTyped();
}

bool TarvikClientConfigurationDialog::addTyped() {
    SettingsEdit edit = edited();
    std::size_t const known = edit.domains.size();
    switch (edit.addDomain(certIgnoreDomain->GetValue(), m_gateway)) {
    case TypedDomain::blank:
        break;
    case TypedDomain::refused:
        showDomainProblem(true);
        certIgnoreDomain->SetFocus();
        return false;
    case TypedDomain::taken:
        if (edit.domains.size() > known)
            certIgnoreDomainList->EnsureVisible(certIgnoreDomainList->Append(edit.domains.Last()));
        certIgnoreDomain->Clear();
        break;
    }
    return true;
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

void TarvikClientConfigurationDialog::complain(wxString const& what, SettingsFault::Reason reason) {
    // TRANSLATORS: %s is the name of a field, or the domain in question.
    wxString text = reason == SettingsFault::letters
                        ? _("SETTINGS_LETTERS_NOT_STORABLE %s")
                        // TRANSLATORS: %s is the name of a field, or the domain in question.
                        : _("SETTINGS_NOT_STORABLE");
    text.Replace("%s", what);
    wxMessageDialog message(this, text, GetTitle(), wxOK | wxCENTRE | wxICON_WARNING);
    useOwnLabels(message);
    message.ShowModal();
}

} // namespace quillon
