// The settings dialog's behaviour.
#pragma once

#include "tarvikclient/gui/guielements.h"
#include "tarvikclient/gui/model/settingsedit.h"

#include <wx/checkbox.h>

namespace quillon {

/// Edits a copy of the user's settings; whoever shows the dialog stores them when it returns wxID_OK, which
/// also adds a domain that is left in the field. A text that cannot be stored keeps the dialog open: the user
/// is told which one it is. Interface thread only.
class TarvikClientConfigurationDialog : public ConfigurationDialog {
public:
    explicit TarvikClientConfigurationDialog(wxWindow* parent);

    /// The name of the gateway in the session's requests: exceptions for it have to be in these letters.
    void setGateway(wxString const& authority) { m_gateway = authority; }
    /// Puts a domain into the field, ready to be added. OK asks about it if it is still there.
    void offerDomain(wxString const& domain);

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
    /// Adds what is in the domain's field; false when it names no server, which is said there.
    bool addTyped();
    /// Deals with a domain that is still in its field; false keeps the dialog open.
    bool finishTyping();
    void updateRemoveButton();
    void selectDomain(unsigned index);
    void complain(wxString const& what, SettingsFault::Reason reason);

    wxString m_gateway;
    wxString m_offered; ///< what offerDomain() put into the field
};

} // namespace quillon
