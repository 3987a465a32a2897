// The desktop program's application object.
#pragma once

#include "base/string.h"
#include "tarvikclient/gui/platform/stopsignals.h"

#include <wx/app.h>

#include <memory>
#include <vector>

class wxDialog;

namespace quillon {

class SingleInstance;

/// On macOS the toolkit calls MacOpenURL() with the URL that the system opens. Elsewhere it does not know
/// that operation, and the program handles the bytes that it was started with.
class UrlOpeningApp : public wxApp {
public:
    virtual void MacOpenURL(wxString const& url) = 0;
};

/// Idles without a window until the first launch URL comes, and ends with the session. Interface
/// thread only, except where said.
class TarvikClientGui final : public UrlOpeningApp {
public:
    /// What the process was started with: its place among the user's processes, which the caller keeps until
    /// the application has ended, and a launch URL, which may be empty. Called before the toolkit starts.
    static void setLaunch(SingleInstance& instance, String const& url);

    bool OnInit() override;
    /// 1 when the first URL could not be handled, else what the toolkit's loop returns.
    int OnRun() override;
    int OnExit() override;
    // A launch URL is bytes, and they need not be text: the gateway gets those that were given. Where the
    // toolkit delivers a text, they are its UTF-8.

    /// Handles the first URL. Any other is handled where no session runs and none can be retried any more;
    /// else it is logged and ignored, and the user is shown what there is. An empty one does only that.
    void MacOpenURL(String const& url);
    void MacOpenURL(wxString const& url) override;

    /// Creates the main frame and starts its session. A failure is logged, shown and ends the application.
    void init(String const& url);
    void init(wxString const& url);
    /// Chooses the interface's language by the URL's parameter "lang".
    void setLangFromUrl(String const& url);
    void setLangFromUrl(wxString const& url);
    /// The application's end is certain: a URL that another process has now is kept there until this one has
    /// ended, and then starts that one.
    void refuseUrls();
    /// Ends the session, and with it the application; open dialogs are cancelled.
    void endSession();

    bool OnExceptionInMainLoop() override;
    void ProcessPendingEvents() override;
    void OnUnhandledException() override;
    /// Any thread.
    void OnAssertFailure(wxChar const* file, int line, wxChar const* function, wxChar const* condition,
                         wxChar const* message) override;

private:
    void enableCoreDumps();
    void takeLaunch();
    void showError(std::vector<wxString> const& paragraphs, wxWindowID stockLabel);

    bool urlHandled = false;
    bool m_ending = false;
    wxDialog* m_errorBox = nullptr; // while it is open
    int m_exitCode = 0;
    std::unique_ptr<StopSignals> m_signals;
};

/// The running application; null outside its life.
extern TarvikClientGui* app;

} // namespace quillon
