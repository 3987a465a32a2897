// The hidden window that owns the session.
#pragma once

#include "tarvikclient/gui/clientholder.h"
#include "tarvikclient/gui/leaving.h"
#include "tarvikclient/gui/menucommands.h"
#include "tarvikclient/gui/model/sessionstate.h"
#include "tarvikclient/gui/nestedloops.h"
#include "tarvikclient/gui/statusarea.h"
#include "tarvikclient/gui/throttle.h"

#include <wx/frame.h>

namespace quillon {

class TarvikClientConfigurationDialog;
class TarvikClientConnectionErrorDialog;
class TarvikClientNotificationPanel;
class TarvikSystrayIcon;

/// Owns the client, the status icon and the panel, and turns the client's notifications into what the user
/// sees. Never shown itself. Interface thread only.
class TarvikMainFrame : public wxFrame, public MenuCommands {
public:
    /// Throws what the client's constructor throws.
    TarvikMainFrame(wxWindow* parent, int id, wxString const& title);
    ~TarvikMainFrame() override;

    /// Runs the client with the launch URL, when no session runs.
    void start(String const& url);
    /// Tells the person of what was found at the start: how the last session ended, if that was not in
    /// order, and of settings that could not be read.
    void tellOfStart();
    /// The URL as the C library's encoding expresses it.
    void start(wxString const& url);
    /// The user wants out: ends the session, then the application. Open dialogs are cancelled. Whatever the
    /// session does, the frame is gone after Quitting's times at the latest.
    void stop() override;
    /// Another launch URL has come. Starts its session where none runs and none can be retried any more; a
    /// dialog that only says that the last one has failed is closed. Otherwise shows the user what there is,
    /// and returns false.
    bool startNext(String const& url);
    /// Shows the user what the program is doing: its dialogs, or else its panel.
    void bringBack();
    /// The display has gone and the process is about to end. Uses no window.
    void stopWithoutDisplay() { m_leaving.withoutDisplay(); }
    /// `announcement` is called, possibly several times, as soon as it is certain that the frame goes.
    void announceEndBy(Leaving::Announcement announcement) { m_leaving.announceBy(std::move(announcement)); }
    void showTaskBarIcon();
    void hideTaskBarIcon();
    /// Returns when the dialog has been closed. Where one is open already, that one is raised instead.
    void showConfigurationDialogModal(wxWindow* parent) override;
    /// The settings on top of the connection error, with what would have the gateway's certificate accepted
    /// ready to be added, where that is what the error is about.
    void showSettingsAfterError(TarvikClientConnectionErrorDialog& dialog);
    void showAbout() override;
    void showLogs() override;

private:
    void onClientConnectError(wxThreadEvent& event);
    void onClientStatus(wxThreadEvent& event);
    void onFatalError(wxThreadEvent& event);
    void onClientDispatch(wxThreadEvent& event);
    void onGatewayQuestion(wxThreadEvent& event);
    void onClose(wxCloseEvent& event);

    int askAfterConnectError(wxString const& text);
    void describeConnectError(TarvikClientConnectionErrorDialog& dialog, wxString const& text);
    void showSettings(wxWindow* parent, wxString const& offeredDomain);
    void retry();
    /// Tells the user that the session is over, and ends the application, or starts the session of a link
    /// that has come meanwhile.
    void fail();
    void showFailure();
    /// Tells the user what has come of an event, if anything has changed.
    void tell(bool changed);
    /// Shows on the panel and the icon what the session is at.
    void showState();
    void notifyUser();
    void onDialogs(bool open);
    void onTunnelStatus(wxThreadEvent& event);
    /// A session begins, with nothing known of it but the gateway.
    void begin(String const& gateway);
    void tellOfLastSession(LeftSession const& left);
    void tellOfSettings();
    void showLog(wxString const& path);
    void saveSettings(TarvikClientConfigurationDialog& dialog);
    void showError(wxWindow* parent, wxString const& text, wxString const& okLabel);

    // Its notify handler's events come to this frame.
    ClientHolder client;
    std::unique_ptr<TarvikSystrayIcon> taskBarIcon;
    std::unique_ptr<TarvikClientNotificationPanel> notificationPanel;
    std::unique_ptr<StatusArea> m_statusArea;

    SessionState m_state;
    Throttle m_shown{[this] { showState(); }};
    bool m_notified = false;
    bool m_failureShown = false;          // the dialog after which the program ends
    String m_nextUrl;                     // to be started instead
    std::unique_ptr<wxEvent> m_postponed; // a connection error, while the settings are open
    NestedLoops m_nestedLoops;
    Leaving m_leaving{*this, client, m_nestedLoops};

    wxDECLARE_EVENT_TABLE();
};

/// The one frame of the process; null before the first launch URL and
/// when the frame has been destroyed.
extern TarvikMainFrame* mainhiddenframe;

} // namespace quillon
