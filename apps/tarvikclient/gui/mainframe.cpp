#include "tarvikclient/gui/mainframe.h"

#include "base/log.h"
#include "http/uri.h"
#include "tarvikclient/gui/artprovider.h"
#include "tarvikclient/gui/configurationdialog.h"
#include "tarvikclient/gui/connectionerrordialog.h"
#include "tarvikclient/gui/gatewaydialog.h"
#include "tarvikclient/gui/model/wxconversion.h"
#include "tarvikclient/gui/notificationpanel.h"
#include "tarvikclient/gui/platform/desktopnotification.h"
#include "tarvikclient/gui/systray.h"

#include <wx/intl.h>

#include <utility>

namespace quillon {

TarvikMainFrame* mainhiddenframe = nullptr;

namespace {

/// As the launch URL has it, without the ticket; empty where it is none.
String gatewayOf(String const& url) {
    try {
        return http::Uri::parse(url, true).getAuthority().rright('@');
    } catch (http::UriComponentException const&) { // the session reports it
        return String::null;
    }
}

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
    m_nestedLoops.watch([this](bool open) { onDialogs(open); });
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

void TarvikMainFrame::onDialogs(bool open) {
    notificationPanel->stayBehind(open);
    // The link's session waits for the failure's dialog, which lies below those that have been closed before
    // it.
    if (!m_nextUrl.empty())
        CallAfter([this] {
            if (m_failureShown)
                m_nestedLoops.endTop();
        });
}

void TarvikMainFrame::bringBack() {
    notificationPanel->reveal();
    m_nestedLoops.raise();
}

void TarvikMainFrame::tell(bool changed) {
    if (!changed)
        return;
    m_shown.request();
    if (m_state.callsForPanel())
        m_shown.flush();
}

void TarvikMainFrame::showState() {
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
