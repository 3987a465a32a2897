// The hidden window that owns the session.
#pragma once

#include "tarvikclient/gui/clientholder.h"
#include "tarvikclient/gui/nestedloops.h"
#include "tarvikclient/gui/quitting.h"
#include "tarvikclient/gui/statusarea.h"

#include <wx/frame.h>
#include <wx/timer.h>

namespace quillon {

class TarvikClientConfigurationDialog;
class TarvikClientNotificationPanel;
class TarvikSystrayIcon;

/// Owns the client, the status icon and the panel, and turns the client's notifications into what the user
/// sees. Never shown itself. Interface thread only.
class TarvikMainFrame : public wxFrame {
public:
    /// Throws what the client's constructor throws.
    TarvikMainFrame(wxWindow* parent, int id, wxString const& title);
    ~TarvikMainFrame() override;

    /// Runs the client with the launch URL. Nothing happens while a session runs.
    void start(wxString const& url);
    /// The user wants out: ends the session, then the application. Open dialogs are cancelled. Whatever the
    /// session does, the frame is gone after Quitting's times at the latest.
    void stop();
    /// The display has gone and the process is about to end: only the session is given its time to end. Uses
    /// no window.
    void stopWithoutDisplay();
    void showTaskBarIcon();
    void hideTaskBarIcon();
    /// Returns when the dialog has been closed. Where one is open already, that one is raised instead.
    void showConfigurationDialogModal(wxWindow* parent);
    void showAbout();
    void showLogs();

private:
    void onClientConnectError(wxThreadEvent& event);
    void onClientStatus(wxThreadEvent& event);
    void onFatalError(wxThreadEvent& event);
    void onClientDispatch(wxThreadEvent& event);
    void onGatewayQuestion(wxThreadEvent& event);
    void onClose(wxCloseEvent& event);
    void onTimer(wxTimerEvent& event);

    int askAfterConnectError(wxString const& text);
    void retry();
    /// Tells the user that the session is over, and ends the application.
    void fail();
    void saveSettings(TarvikClientConfigurationDialog& dialog);
    void showError(wxWindow* parent, wxString const& text, wxString const& okLabel);

    /// The next step of ending the session that is due.
    void endSession();
    /// Closes the frame as soon as no handler of it or of its windows can be on the stack.
    void closeWhenFree();
    void closeIfFree();

    // Its notify handler's events come to this frame.
    ClientHolder client;
    std::unique_ptr<TarvikSystrayIcon> taskBarIcon;
    std::unique_ptr<TarvikClientNotificationPanel> notificationPanel;
    std::unique_ptr<StatusArea> m_statusArea;

    wxString m_statusText;                // of the client's state; no control shows it yet
    std::unique_ptr<wxEvent> m_postponed; // a connection error, while the settings are open
    NestedLoops m_nestedLoops;
    Quitting m_quitting;
    wxTimer m_timer; // runs while the session is to end or the frame to close
    bool m_atWork = false;
    bool m_closing = false;

    wxDECLARE_EVENT_TABLE();
};

/// The one frame of the process, which the status icon's menu acts on; null before the first launch URL and
/// when the frame has been destroyed.
extern TarvikMainFrame* mainhiddenframe;

} // namespace quillon
