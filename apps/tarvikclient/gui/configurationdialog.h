// The settings dialog's behaviour.
#pragma once

#include "tarvikclient/gui/guielements.h"
#include "tarvikclient/gui/model/settingsedit.h"

#include <wx/checkbox.h>

namespace quillon {

/// Edits a copy of the user's settings; whoever shows the dialog stores them when it returns wxID_OK. A text
/// that cannot be stored keeps the dialog open: the user is told which one it is. Interface thread only.
class TarvikClientConfigurationDialog : public ConfigurationDialog {
public:
    explicit TarvikClientConfigurationDialog(wxWindow* parent);

    void readConfiguration(ClientLocalConfiguration& conf);
    void writeConfiguration(ClientLocalConfiguration& conf);
    /// The check box of the desktop's proxy, which is no part of that configuration.
    void setSystemProxyUsed(bool used) { useSystemProxy->SetValue(used); }
    bool isSystemProxyUsed() const { return useSystemProxy->GetValue(); }

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
