// The layout of the dialogs and of the panel, without behaviour: what a control does is decided in the
// classes that derive from these. Texts are looked up when a window is made. Interface thread only.
#pragma once

#include <wx/dialog.h>
#include <wx/frame.h>

class wxButton;
class wxCheckBox;
class wxListBox;
class wxStaticBitmap;
class wxStaticText;
class wxTextCtrl;

namespace quillon {

class ScrolledContents;

/// The settings: credentials for a proxy, hosts whose certificates are not checked.
class ConfigurationDialog : public wxDialog {
public:
    explicit ConfigurationDialog(wxWindow* parent);

protected:
    /// Enter in the domain's field, and the add button.
    virtual void addCertIgnoreDomain(wxCommandEvent& event);
    virtual void onCertIgnoreDomainList(wxCommandEvent& event);
    virtual void onRemoveCertIgnoreDomainButton(wxCommandEvent& event);

    /// Makes the dialog as large as its contents need, within the screen, and lets nobody make it smaller.
    void fitToContents(bool keepLarger = false);
    /// Says below the domain's field what is wanted there, until something else is typed.
    void showDomainProblem(bool show);

    wxCheckBox* useSystemProxy = nullptr;
    wxTextCtrl* proxyLogin = nullptr;
    wxTextCtrl* proxyPassword = nullptr;
    wxTextCtrl* certIgnoreDomain = nullptr;
    wxListBox* certIgnoreDomainList = nullptr;
    wxButton* removeCertIgnoreDomainButton = nullptr;

private:
    wxWindow* makeProxyGroup();
    wxWindow* makeCertificateGroup();
    wxSizer* makeDomainProblem(wxWindow* box);
    void makeList(wxWindow* box);
    void bindEvents();
    void onListKey(wxKeyEvent& event);

    ScrolledContents* m_contents = nullptr;
    wxSizer* m_domainProblem = nullptr;
};

/// What is shown when the gateway cannot be reached.
class ConnectionErrorDialog : public wxDialog {
public:
    /// Id of the settings button, whose event whoever shows the dialog handles.
    static constexpr int settingsButtonId = 1000;
    /// Id of the button that shows the log, which is handled likewise.
    static constexpr int logButtonId = 1001;

    ConnectionErrorDialog(wxWindow* parent, wxString const& title);

protected:
    /// The dialog's own close event.
    virtual void OnQuit(wxCloseEvent& event);
    virtual void onInit(wxInitDialogEvent& event);
    virtual void onRetry(wxCommandEvent& event);
    virtual void onQuit(wxCommandEvent& event);

    wxStaticText* errorHeading = nullptr;
    wxStaticText* errorHappened = nullptr;
    wxStaticText* errorToDo = nullptr;
    wxTextCtrl* errorDetails = nullptr; // to be read and copied
};

/// What the program is, which version of it, what it stands on, and where its log is.
class AboutDialog : public wxDialog {
public:
    explicit AboutDialog(wxWindow* parent);

protected:
    virtual void onClose(wxCommandEvent& event);

    ScrolledContents* contents = nullptr;
    wxStaticText* version = nullptr;
    wxTextCtrl* logPlace = nullptr;
    wxTextCtrl* licences = nullptr;

private:
    void addIdentity(wxSizer& rows);
    void addFacts(wxSizer& rows);
};

/// Three rows of a picture and a text each, in a small window without a frame: the program, what it is doing,
/// and how the tunnel is.
class NotificationPanel : public wxFrame {
public:
    explicit NotificationPanel(wxWindow* parent);

protected:
    wxStaticText* stateLabel = nullptr;
    wxStaticText* statusLabel = nullptr;
    wxStaticBitmap* statusPicture = nullptr;
    wxButton* menuButton = nullptr;    ///< hidden at first, as the next one is
    wxButton* addressButton = nullptr; ///< copies the tunnel's address
};

} // namespace quillon
