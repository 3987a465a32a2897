#include "tarvikclient/gui/mainframe.h"

#include "base/console.h"
#include "base/file.h"
#include "tarvikclient/gui/aboutdialog.h"
#include "tarvikclient/gui/artprovider.h"
#include "tarvikclient/gui/configurationdialog.h"
#include "tarvikclient/gui/connectionerrordialog.h"
#include "tarvikclient/gui/fatalerrordialog.h"
#include "tarvikclient/gui/gatewaydialog.h"
#include "tarvikclient/gui/logwindow.h"
#include "tarvikclient/gui/model/failuretext.h"
#include "tarvikclient/gui/model/wxconversion.h"
#include "tarvikclient/gui/notificationpanel.h"
#include "tarvikclient/gui/systray.h"

#include <wx/dcclient.h>
#include <wx/intl.h>
#include <wx/msgdlg.h>
#include <wx/stockitem.h>

namespace quillon {

TarvikMainFrame* mainhiddenframe = nullptr;

namespace {

constexpr int pathWidth = 600; // pixels

/// The settings button of the connection-error dialog: the settings open on top of that dialog.
struct FshowConfigurationDialog {
    TarvikMainFrame* frame;
    TarvikClientConnectionErrorDialog* dialog;

    void operator()(wxCommandEvent&) const { frame->showSettingsAfterError(*dialog); }
};

} // namespace

#define EVT_CLIENTNOTIFY(id, function)                                                                       \
    wxDECLARE_EVENT_TABLE_ENTRY(EVT_TYPE_CLIENTNOTIFY, id, wxID_ANY, wxThreadEventHandler(function), nullptr),

wxBEGIN_EVENT_TABLE(TarvikMainFrame, wxFrame)
    EVT_CLIENTNOTIFY(CLIENTNOTIFY_CONNECT_ERROR, TarvikMainFrame::onClientConnectError)
    EVT_CLIENTNOTIFY(CLIENTNOTIFY_STATUS, TarvikMainFrame::onClientStatus)
    EVT_CLIENTNOTIFY(CLIENTNOTIFY_FATAL_ERROR, TarvikMainFrame::onFatalError)
    EVT_CLIENTNOTIFY(CLIENTNOTIFY_DISPATCH, TarvikMainFrame::onClientDispatch)
    EVT_CLOSE(TarvikMainFrame::onClose)
wxEND_EVENT_TABLE()

#undef EVT_CLIENTNOTIFY

TarvikMainFrame::TarvikMainFrame(wxWindow* parent, int id, wxString const& title)
    : wxFrame(parent, id, title, wxDefaultPosition, wxDefaultSize, wxDEFAULT_FRAME_STYLE), client(*this) {
    SetIcons(programIcons());
    notificationPanel = std::make_unique<TarvikClientNotificationPanel>(this);
    Bind(wxEventTypeTag<wxThreadEvent>(EVT_TYPE_CLIENTNOTIFY), &TarvikClientNotificationPanel::onVpnStatus,
         notificationPanel.get(), CLIENTNOTIFY_VPN_STATUS);
    Bind(EVT_GATEWAY_QUESTION, &TarvikMainFrame::onGatewayQuestion, this);
    showTaskBarIcon();
}

TarvikMainFrame::~TarvikMainFrame() {
    if (mainhiddenframe == this)
        mainhiddenframe = nullptr;
    m_statusArea.reset();
    taskBarIcon.reset();
    notificationPanel.reset();
}

void TarvikMainFrame::start(wxString const& url) {
    start(wxToQuillonString(url));
}

void TarvikMainFrame::stop() {
    m_leaving.begin();
}

void TarvikMainFrame::showTaskBarIcon() {
    if (!taskBarIcon)
        taskBarIcon = std::make_unique<TarvikSystrayIcon>(wxTBI_CUSTOM_STATUSITEM, this);
    if (m_statusArea)
        return;
    m_statusArea = std::make_unique<StatusArea>(*taskBarIcon, [this](StatusRung rung) {
        notificationPanel->carryMenu(rung == StatusRung::none ? taskBarIcon.get() : nullptr);
    });
    m_statusArea->show();
}

void TarvikMainFrame::hideTaskBarIcon() {
    // A panel that carries the menu goes on doing so: there is no other way to stop the session.
    m_statusArea->remove();
    taskBarIcon->RemoveIcon();
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
    dialog.readConfiguration(client->getLocalConfiguration());
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
        client->saveLocalConfiguration();
    } catch (EFile const&) {
        // What was entered is in force all the same, until the program ends.
        wxClientDC dc(this);
        wxString const path = wxControl::Ellipsize(quillonToWxString(client->getLocalConfPath()), dc,
                                                   wxELLIPSIZE_MIDDLE, FromDIP(pathWidth));
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
    showLogWindow(this, quillonToWxString(console->getFilename(TRACE)),
                  quillonToWxString(client->getMediation()));
}

void TarvikMainFrame::showError(wxWindow* parent, wxString const& text, wxString const& okLabel) {
    // TRANSLATORS: title of a message.
    wxMessageDialog dialog(parent, text, _("Error"), wxOK | wxCENTRE | wxICON_ERROR);
    dialog.SetOKLabel(okLabel);
    dialog.ShowModal();
}

void TarvikMainFrame::onGatewayQuestion(wxThreadEvent& event) {
    auto const question = event.GetPayload<std::shared_ptr<GatewayQuestion>>();
    if (!question->isOpen())
        return;
    if (TarvikClientGatewayDialog(this, question->gateway()).ShowModal() == wxID_YES) {
        TarvikClientGuiConsent::agree(*question);
        return;
    }
    question->answer(GatewayQuestion::Answer::no);
    stop(); // the user's own decision is no error to be told of
}

void TarvikMainFrame::onClientConnectError(wxThreadEvent& event) {
    if (m_leaving.begun())
        return; // it failed before it could be cut off
    if (auto* const open = m_nestedLoops.find<TarvikClientConnectionErrorDialog>()) {
        describeConnectError(*open, event.GetString());
        return;
    }
    // The error dialog would lock up the settings below it, to which it leads.
    if (m_nestedLoops.find<TarvikClientConfigurationDialog>()) {
        m_postponed.reset(event.Clone());
        return;
    }
    int const choice = askAfterConnectError(event.GetString());
    if (choice == TarvikClientConnectionErrorDialog::quit)
        stop();
    else if (choice == TarvikClientConnectionErrorDialog::retry)
        retry();
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

void TarvikMainFrame::retry() {
    if (m_leaving.begun())
        return;
    m_leaving.setAtWork(false);
    if (client.restart())
        return;
    log(ERROR, "TarvikMainFrame", "retry", "The last session has not ended, so none was started");
    fail();
}

void TarvikMainFrame::onClientStatus(wxThreadEvent& event) {
    switch (event.GetInt()) {
    case STATUS_IDLE:
        // TRANSLATORS: the program's state.
        m_statusText = _("STATUS_IDLE");
        break;
    case STATUS_DOWNLOADING_COMPENENTS:
        // TRANSLATORS: the program's state.
        m_statusText = _("STATUS_DOWNLOADING_COMPENENTS");
        break;
    case STATUS_CONNECTED:
        // TRANSLATORS: the program's state.
        m_statusText = _("STATUS_CONNECTED");
        break;
    case STATUS_FINISHED:
        m_leaving.sessionEnded();
        break;
    case STATUS_HOSTCHECKING:
        // TRANSLATORS: the program's state: this machine is being checked.
        m_statusText = _("HOSTCHECKING");
        break;
    default:
        break;
    }
}

void TarvikMainFrame::onFatalError(wxThreadEvent&) {
    fail();
}

void TarvikMainFrame::fail() {
    if (!m_leaving.begun())
        // TRANSLATORS: a message whose only button ends the program. More sentences follow.
        TarvikClientFatalErrorDialog(_("UNKNOWN_ERROR_HAS_OCCURED"),
                                     textsOf(client->getFailure(), quillonToWxString(client->getMediation())),
                                     wxGetStockLabel(wxID_EXIT))
            .ShowModal();
    stop();
}

void TarvikMainFrame::onClientDispatch(wxThreadEvent& event) {
    m_leaving.setAtWork(true);
    if (event.GetInt() == CLIENT_TYPE_HOSTCHECKER)
        hideTaskBarIcon();
}

void TarvikMainFrame::onClose(wxCloseEvent& event) {
    client->stop();
    hideTaskBarIcon();
    m_leaving.answer(event);
}

} // namespace quillon
