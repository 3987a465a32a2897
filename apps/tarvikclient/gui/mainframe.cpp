#include "tarvikclient/gui/mainframe.h"

#include "base/console.h"
#include "base/file.h"
#include "http/uri.h"
#include "tarvikclient/gui/aboutdialog.h"
#include "tarvikclient/gui/artprovider.h"
#include "tarvikclient/gui/configurationdialog.h"
#include "tarvikclient/gui/connectionerrordialog.h"
#include "tarvikclient/gui/fatalerrordialog.h"
#include "tarvikclient/gui/gatewaydialog.h"
#include "tarvikclient/gui/logwindow.h"
#include "tarvikclient/gui/model/failuretext.h"
#include "tarvikclient/gui/model/lastsession.h"
#include "tarvikclient/gui/model/wxconversion.h"
#include "tarvikclient/gui/noticewindow.h"
#include "tarvikclient/gui/notificationpanel.h"
#include "tarvikclient/gui/platform/desktopnotification.h"
#include "tarvikclient/gui/systray.h"

#include <wx/dcclient.h>
#include <wx/intl.h>
#include <wx/msgdlg.h>
#include <wx/stockitem.h>

#include <utility>

namespace quillon {

TarvikMainFrame* mainhiddenframe = nullptr;

namespace {

constexpr int pathWidth = 75; // characters

/// As the launch URL has it, without the ticket; empty where it is none.
String gatewayOf(String const& url) {
    try {
        return http::Uri::parse(url, true).getAuthority().rright('@');
    } catch (http::UriComponentException const&) { // the session reports it
        return String::null;
    }
}

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
    // The panel's handler comes first, because it is bound last.
    Bind(wxEventTypeTag<wxThreadEvent>(EVT_TYPE_CLIENTNOTIFY), &TarvikMainFrame::onTunnelStatus, this,
         CLIENTNOTIFY_VPN_STATUS);
    Bind(wxEventTypeTag<wxThreadEvent>(EVT_TYPE_CLIENTNOTIFY), &TarvikClientNotificationPanel::onVpnStatus,
         notificationPanel.get(), CLIENTNOTIFY_VPN_STATUS);
    Bind(EVT_GATEWAY_QUESTION, &TarvikMainFrame::onGatewayQuestion, this);
    m_nestedLoops.watch([this](bool open) { notificationPanel->stayBehind(open); });
    m_leaving.tellBy([this](bool overdue) { tell(overdue ? m_state.abandon() : m_state.leave()); });
    showTaskBarIcon();
}

TarvikMainFrame::~TarvikMainFrame() {
    if (mainhiddenframe == this)
        mainhiddenframe = nullptr;
    m_nestedLoops.watch({});
    if (m_notified && m_state.stage() != SessionStage::ended)
        withdrawDesktopNotification();
    m_statusArea.reset();
    taskBarIcon.reset();
    notificationPanel.reset();
}

void TarvikMainFrame::start(wxString const& url) {
    start(wxToQuillonString(url));
}

void TarvikMainFrame::start(String const& url) {
    begin(gatewayOf(url));
    if (client.run(url))
        return;
    log(ERROR, "TarvikMainFrame", "start", "The last session has not ended, so none was started");
    fail();
}

void TarvikMainFrame::begin(String const& gateway) {
    m_leaving.setAtWork(false);
    notificationPanel->reset();
    tell(m_state.begin(quillonToWxString(gateway)));
}

bool TarvikMainFrame::startNext(String const& url) {
    if (m_failureShown) {
        m_nextUrl = url.owned();
        m_nestedLoops.endTop();
        return true;
    }
    bool const possible =
        m_state.isOver() && !m_leaving.begun() && !m_nestedLoops.find<TarvikClientConnectionErrorDialog>();
    if (possible)
        start(url);
    else
        bringBack();
    return possible;
}

void TarvikMainFrame::bringBack() {
    notificationPanel->reveal();
    m_nestedLoops.raise();
}

void TarvikMainFrame::tell(bool changed) {
    if (!changed)
        return;
    notificationPanel->setState(m_state.text());
    m_statusArea->tell(m_state.mood(), m_state.text());
    if (m_state.callsForPanel())
        notificationPanel->reveal();
    if (m_state.isNews())
        notifyUser();
}

void TarvikMainFrame::notifyUser() {
    m_notified = true;
    bool const connected = m_state.stage() == SessionStage::connected;
    // TRANSLATORS: the program's name.
    showDesktopNotification(_("TarvikClient"), connected ? notificationPanel->statusLine() : m_state.text());
}

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
    tell(m_state.fail());
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
    begin(client->getMediation());
    if (client.restart())
        return;
    log(ERROR, "TarvikMainFrame", "retry", "The last session has not ended, so none was started");
    fail();
}

void TarvikMainFrame::onClientStatus(wxThreadEvent& event) {
    tell(m_state.onStatus(static_cast<ClientStatus>(event.GetInt())));
    if (event.GetInt() == STATUS_FINISHED)
        m_leaving.sessionEnded();
}

void TarvikMainFrame::onTunnelStatus(wxThreadEvent&) {
    tell(m_state.onTunnel(notificationPanel->status().event()));
}

void TarvikMainFrame::onFatalError(wxThreadEvent&) {
    fail();
}

void TarvikMainFrame::fail() {
    if (!m_leaving.begun())
        showFailure();
    String const next = std::exchange(m_nextUrl, String());
    if (next.empty() || m_leaving.begun())
        stop();
    else
        start(next);
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

void TarvikMainFrame::onClientDispatch(wxThreadEvent& event) {
    m_leaving.setAtWork(true);
    tell(m_state.onDispatch(static_cast<ClientType>(event.GetInt())));
    if (event.GetInt() == CLIENT_TYPE_HOSTCHECKER)
        hideTaskBarIcon();
}

void TarvikMainFrame::onClose(wxCloseEvent& event) {
    client->stop();
    hideTaskBarIcon();
    m_leaving.answer(event);
}

} // namespace quillon
