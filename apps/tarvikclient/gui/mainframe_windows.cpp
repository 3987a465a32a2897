// The windows that the frame opens.
#include "tarvikclient/gui/mainframe.h"

#include "base/console.h"
#include "base/file.h"
#include "tarvikclient/gui/aboutdialog.h"
#include "tarvikclient/gui/configurationdialog.h"
#include "tarvikclient/gui/connectionerrordialog.h"
#include "tarvikclient/gui/fatalerrordialog.h"
#include "tarvikclient/gui/logwindow.h"
#include "tarvikclient/gui/model/failuretext.h"
#include "tarvikclient/gui/model/lastsession.h"
#include "tarvikclient/gui/model/wxconversion.h"
#include "tarvikclient/gui/noticewindow.h"

#include <wx/dcclient.h>
#include <wx/intl.h>
#include <wx/msgdlg.h>
#include <wx/stockitem.h>

namespace quillon {

namespace {

constexpr int pathWidth = 75; // characters

/// The settings button of the connection-error dialog: the settings open on top of that dialog.
struct FshowConfigurationDialog {
    TarvikMainFrame* frame;
    TarvikClientConnectionErrorDialog* dialog;

    void operator()(wxCommandEvent&) const { frame->showSettingsAfterError(*dialog); }
};

} // namespace

void TarvikMainFrame::tellOfStart() {
    if (client->leftSession())
        tellOfLastSession(*client->leftSession());
    if (client->getLocalConfiguration().isFileUnreadable())
        tellOfSettings();
}

void TarvikMainFrame::tellOfSettings() {
    // TRANSLATORS: {path} is where the settings that could not be read will be.
    wxString text = _("SETTINGS_UNREADABLE_DETAILS");
    wxString path = quillonToWxString(client->getLocalConfPath() + ClientLocalConfiguration::brokenSuffix);
    path.Replace("//", "/");
    text.Replace("{path}", path);
    // TRANSLATORS: a window's first sentence.
    showNotice(*this, {_("SETTINGS_UNREADABLE"), text, _("Settings"),
                       [this] { showConfigurationDialogModal(nullptr); }});
}

void TarvikMainFrame::tellOfLastSession(LeftSession const& left) {
    // TRANSLATORS: a window's first sentence.
    Notice notice{_("LAST_SESSION"), lastSessionText(left), wxString(), nullptr};
    if (!left.log.empty()) {
        // TRANSLATORS: a button; opens the log of that session.
        notice.button = _("LAST_SESSION_LOG");
        // TRANSLATORS: follows what happened.
        notice.text += "\n\n" + _("LAST_SESSION_ADVICE");
        notice.action = [this, path = quillonToWxString(left.log)] { showLog(path); };
    }
    showNotice(*this, notice);
}

void TarvikMainFrame::showConfigurationDialogModal(wxWindow* parent) {
    showSettings(parent, wxString());
}

void TarvikMainFrame::showSettingsAfterError(TarvikClientConnectionErrorDialog& dialog) {
    String const gateway = client->getMediation();
    bool const offers = connectionErrorOf(client->getConnectError()).isOfGatewaysCertificate() &&
                        client->allowsCertificateExceptions() &&
                        !client->getLocalConfiguration().isSslCertIgnored(gateway);
    showSettings(&dialog, offers ? quillonToWxString(gateway) : wxString());
}

void TarvikMainFrame::showSettings(wxWindow* parent, wxString const& offeredDomain) {
    if (auto* const open = m_nestedLoops.find<TarvikClientConfigurationDialog>()) {
        open->Raise();
        return;
    }
    TarvikClientConfigurationDialog dialog(parent);
    dialog.setGateway(quillonToWxString(client->getMediation()));
    dialog.readConfiguration(client->getLocalConfiguration());
    dialog.setSystemProxyUsed(client->usesSystemProxy());
    if (!offeredDomain.empty())
        dialog.offerDomain(offeredDomain);
    if (dialog.ShowModal() == wxID_OK)
        saveSettings(dialog);
    if (m_postponed)
        QueueEvent(m_postponed.release());
}

void TarvikMainFrame::saveSettings(TarvikClientConfigurationDialog& dialog) {
    dialog.writeConfiguration(client->getLocalConfiguration());
    try {
        client->useSystemProxy(dialog.isSystemProxyUsed());
        client->saveLocalConfiguration();
    } catch (EFile const&) {
        // What was entered is in force all the same, until the program ends.
        wxClientDC dc(this);
        wxString const path = wxControl::Ellipsize(quillonToWxString(client->getLocalConfPath()), dc,
                                                   wxELLIPSIZE_MIDDLE, pathWidth * GetCharWidth());
        // TRANSLATORS: shown when the settings could not be written to disk; they hold until the program
        // ends. %s is the path of the file.
        showError(dialog.GetParent(), wxString::Format(_("SETTINGS_NOT_SAVED %s"), path),
                  wxGetStockLabel(wxID_OK));
    }
}

void TarvikMainFrame::showAbout() {
    if (auto* const open = m_nestedLoops.find<TarvikClientAboutDialog>()) {
        open->Raise();
        return;
    }
    TarvikClientAboutDialog(nullptr).ShowModal();
}

void TarvikMainFrame::showLogs() {
    client->showLogs();
    String const path = console->getFilename(TRACE);
    showLog(path == "null" ? wxString() : quillonToWxString(path));
}

void TarvikMainFrame::showLog(wxString const& path) {
    showLogWindow(this, path, quillonToWxString(client->getMediation()));
}

void TarvikMainFrame::showError(wxWindow* parent, wxString const& text, wxString const& okLabel) {
    // TRANSLATORS: title of a message.
    wxMessageDialog dialog(parent, text, _("Error"), wxOK | wxCENTRE | wxICON_ERROR);
    dialog.SetOKLabel(okLabel);
    dialog.ShowModal();
}

int TarvikMainFrame::askAfterConnectError(wxString const& text) {
    TarvikClientConnectionErrorDialog dialog(this);
    dialog.Bind(wxEVT_BUTTON, FshowConfigurationDialog{this, &dialog},
                ConnectionErrorDialog::settingsButtonId);
    dialog.Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { showLogs(); }, ConnectionErrorDialog::logButtonId);
    describeConnectError(dialog, text);
    return dialog.ShowModal();
}

void TarvikMainFrame::describeConnectError(TarvikClientConnectionErrorDialog& dialog, wxString const& text) {
    wxString const gateway = quillonToWxString(client->getMediation());
    dialog.setGateway(gateway);
    dialog.setAdvice(adviceOn(connectionErrorOf(client->getConnectError()),
                              {gateway, client->allowsCertificateExceptions()}));
    dialog.setErrorContent(text);
}

void TarvikMainFrame::showFailure() {
    tell(m_state.fail());
    m_failureShown = true;
    // TRANSLATORS: a message whose only button ends the program. More sentences follow.
    TarvikClientFatalErrorDialog(_("UNKNOWN_ERROR_HAS_OCCURED"),
                                 textsOf(client->getFailure(), quillonToWxString(client->getMediation())),
                                 wxGetStockLabel(wxID_EXIT))
        .ShowModal();
    m_failureShown = false;
}

} // namespace quillon
