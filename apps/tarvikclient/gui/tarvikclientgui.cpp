#include "tarvikclient/gui/tarvikclientgui.h"

#include "base/exception.h"
#include "base/log.h"
#include "tarvikclient/client.h"
#include "tarvikclient/gui/artprovider.h"
#include "tarvikclient/gui/fatalerrordialog.h"
#include "tarvikclient/gui/mainframe.h"
#include "tarvikclient/gui/model/failuretext.h"
#include "tarvikclient/gui/model/language.h"
#include "tarvikclient/gui/model/wxconversion.h"
#include "tarvikclient/gui/platform/display.h"
#include "tarvikclient/gui/platform/singleinstance.h"
#include "tarvikclient/gui/platform/stocklabels.h"
#include "tarvikclient/gui/platform/toolkitenvironment.h"
#include "tarvikclient/gui/wxlogbridge.h"

#include <sys/resource.h>
#include <wx/intl.h>
#include <wx/stockitem.h>
#include <wx/utils.h>

#include <exception>
#include <utility>

namespace quillon {

TarvikClientGui* app = nullptr;

namespace {

wxLocale locale;

// wxSingleInstanceChecker is not used: it finds the other process by an id in a file, and a file that
// outlives a crash may name a stranger's process; nor could it hand a URL over.
SingleInstance* g_instance = nullptr;
String g_launchUrl;

void logTo(LogCategory category, char const* method, String const& text) {
    log(category, "TarvikClientGui", method, text);
}

/// Logs the exception that is being handled.
void logException(char const* method) {
    try {
        throw;
    } catch (std::exception const& e) {
        logTo(ERROR, method, e.what());
    } catch (...) {
        logTo(ERROR, method, "unknown exception");
    }
}

} // namespace

void TarvikClientGui::setLaunch(SingleInstance& instance, String const& url) {
    g_instance = &instance;
    g_launchUrl = url.clone();
}

bool TarvikClientGui::OnInit() {
    restoreEnvironment();
    // The pictures and the catalogue are looked up by this name, whatever name the program was started by.
    SetAppName("tarvikclient");
    delete wxLog::SetActiveTarget(new WxLogBridge);
    enableCoreDumps();
    app = this;
    TarvikClientArtProvider::init();
    wxArtProvider::Push(new TarvikClientArtProvider);
    // Queued: nothing that fails may pass through the event source that calls, which is a C library's.
    m_signals = std::make_unique<StopSignals>([this] { CallAfter([this] { endSession(); }); });
    // The toolkit's own answer would be to close the frame, which refuses while the session runs, and so to
    // refuse the end of the desktop's session.
    Bind(wxEVT_QUERY_END_SESSION, [](wxCloseEvent&) {});
    // At once: some desktops end the process when the handler returns.
    Bind(wxEVT_END_SESSION, [this](wxCloseEvent&) { endSession(); });
    // What a logout comes to where the desktop ends the display and nothing else.
    watchDisplay([] {
        if (mainhiddenframe)
            mainhiddenframe->stopWithoutDisplay();
    });
    takeLaunch();
    return true;
}

void TarvikClientGui::enableCoreDumps() {
    wxString value;
    // cppcheck-suppress ignoredReturnValue; what is absent stays empty
    wxGetEnv("TARVIK_ENABLE_COREDUMPS", &value);
    logTo(DEBUG, "OnInit", "TARVIK_ENABLE_COREDUMPS=" + wxToQuillonString(value));
    if (value.Trim() != "1")
        return;
    logTo(DEBUG, "OnInit", "Enabling coredumps");
    rlimit limit{RLIM_INFINITY, RLIM_INFINITY};
    if (setrlimit(RLIMIT_CORE, &limit) == 0)
        return;
    // Only the administrator can raise the hard limit.
    getrlimit(RLIMIT_CORE, &limit);
    limit.rlim_cur = limit.rlim_max;
    if (setrlimit(RLIMIT_CORE, &limit) != 0 || limit.rlim_max == 0)
        logTo(ERROR, "OnInit", "the system's limit allows no core dumps");
}

/// The URL that this process was started with comes before those of the others, some of which may be waiting.
void TarvikClientGui::takeLaunch() {
    if (!g_launchUrl.empty())
        CallAfter([this] { MacOpenURL(g_launchUrl); });
    CallAfter([this] {
        if (!g_instance || m_ending)
            return;
        // Not handled where it is received: a dialog opened there would keep further ones from being
        // received.
        g_instance->listen([this](String const& url) { CallAfter([this, url] { MacOpenURL(url); }); });
    });
}

void TarvikClientGui::MacOpenURL(wxString const& url) {
    MacOpenURL(wxToUtf8(url));
}

void TarvikClientGui::MacOpenURL(String const& url) {
    if (m_ending)
        return;
    if (url.empty()) {
        if (mainhiddenframe)
            mainhiddenframe->bringBack();
    } else if (!urlHandled) {
        init(url);
    } else if (!mainhiddenframe || !mainhiddenframe->startNext(url)) {
        logTo(ERROR, "MacOpenURL", "I can only handle MacOpenURL once for now... Ignoring.");
    }
}

void TarvikClientGui::init(wxString const& url) {
    init(wxToUtf8(url));
}

void TarvikClientGui::init(String const& url) {
    urlHandled = true;
    try {
        setLangFromUrl(url);
        mainhiddenframe = new TarvikMainFrame(nullptr, wxID_ANY, argv[0]);
        mainhiddenframe->announceEndBy([this] { refuseUrls(); });
        mainhiddenframe->Show(false);
        mainhiddenframe->start(url);
        mainhiddenframe->tellOfStart();
    } catch (...) {
        logException("init");
        m_exitCode = 1;
        showError(textsOfStart(std::current_exception()), wxID_EXIT);
        endSession();
    }
}

void TarvikClientGui::setLangFromUrl(wxString const& url) {
    setLangFromUrl(wxToUtf8(url));
}

void TarvikClientGui::setLangFromUrl(String const& url) {
    initLanguage(locale, languageOfCode(TarvikClient::getLangFromArg(url)));
    useOwnStockLabels();
}

/// One box at a time: an event that keeps failing would pile them up.
void TarvikClientGui::showError(std::vector<wxString> const& paragraphs, wxWindowID stockLabel) {
    if (m_errorBox)
        return;
    // TRANSLATORS: a message; more sentences may follow.
    TarvikClientFatalErrorDialog box(_("UNKNOWN_ERROR_HAS_OCCURED"), paragraphs, wxGetStockLabel(stockLabel));
    m_errorBox = &box;
    box.ShowModal();
    m_errorBox = nullptr;
}

void TarvikClientGui::refuseUrls() {
    if (!std::exchange(m_ending, true))
        logTo(TRACE, "refuseUrls", "The program ends; launch URLs are left to the next one");
    if (g_instance)
        g_instance->listen({});
}

void TarvikClientGui::endSession() {
    refuseUrls();
    if (mainhiddenframe) {
        mainhiddenframe->stop();
        return;
    }
    if (m_errorBox && m_errorBox->IsModal())
        m_errorBox->EndModal(wxID_CANCEL);
    if (wxEventLoopBase* const loop = GetMainLoop())
        loop->ScheduleExit();
}

bool TarvikClientGui::OnExceptionInMainLoop() {
    logException("OnExceptionInMainLoop");
    showError({}, wxID_OK);
    return true;
}

/// The toolkit guards only what it calls for a window's own events: from a queued one, such as the client's,
/// an exception would pass through the main loop and end it.
void TarvikClientGui::ProcessPendingEvents() {
    try {
        wxApp::ProcessPendingEvents();
    } catch (...) {
        WakeUpIdle(); // for the events behind this one
        OnExceptionInMainLoop();
    }
}

void TarvikClientGui::OnUnhandledException() {
    logException("OnUnhandledException");
}

void TarvikClientGui::OnAssertFailure(wxChar const* file, int line, wxChar const* function,
                                      wxChar const* condition, wxChar const* message) {
    wxString const text =
        wxString::Format("%s:%d %s: %s %s", file, line, function, condition, message ? message : wxS(""));
    logTo(ASSERT, "OnAssertFailure", wxToQuillonString(text));
}

int TarvikClientGui::OnRun() {
    int const code = wxApp::OnRun();
    return m_exitCode ? m_exitCode : code;
}

int TarvikClientGui::OnExit() {
    refuseUrls();
    m_signals.reset();
    app = nullptr;
    return wxApp::OnExit();
}

} // namespace quillon
