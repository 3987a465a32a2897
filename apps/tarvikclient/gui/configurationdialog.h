// The settings dialog's behaviour.
#pragma once

#include "tarvikclient/gui/guielements.h"
#include "tarvikclient/gui/model/settingsedit.h"

namespace quillon {

/// Edits a copy of the user's settings; whoever shows the dialog stores them when it returns wxID_OK. A text
/// that cannot be stored keeps the dialog open: the user is told which one it is. Interface thread only.
class TarvikClientConfigurationDialog : public ConfigurationDialog {
public:
    explicit TarvikClientConfigurationDialog(wxWindow* parent);

    /// Puts a domain into the field, ready to be added.
    void offerDomain(wxString const& domain);

    void readConfiguration(ClientLocalConfiguration& conf);
    void writeConfiguration(ClientLocalConfiguration& conf);

    /// Called by wxID_OK; false keeps the dialog open.
    bool Validate() override;

protected:
    void addCertIgnoreDomain(wxCommandEvent& event) override;
    void onCertIgnoreDomainList(wxCommandEvent& event) override;
    void onRemoveCertIgnoreDomainButton(wxCommandEvent& event) override;

private:
    SettingsEdit edited() const;
    void updateRemoveButton();
    void selectDomain(unsigned index);
    void complain(wxString const& what);
};

} // namespace quillon
