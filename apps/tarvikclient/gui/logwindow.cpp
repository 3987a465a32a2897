#include "tarvikclient/gui/logwindow.h"

#include "base/log.h"
#include "tarvikclient/gui/dialoglayout.h"
#include "tarvikclient/gui/logwindowparts.h"
#include "tarvikclient/gui/model/logtail.h"
#include "tarvikclient/gui/model/privatetext.h"

#include <wx/button.h>
#include <wx/clipbrd.h>
#include <wx/filedlg.h>
#include <wx/filename.h>
#include <wx/frame.h>
#include <wx/intl.h>
#include <wx/msgdlg.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/stdpaths.h>
#include <wx/textctrl.h>
#include <wx/timer.h>
#include <wx/utils.h>

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

wxSize const defaultSize(105, 30); // in characters, and lines
constexpr int pollInterval = 500;  // ms
// In characters: the control is cut down to the second when it holds more than the first.
constexpr long mostShown = 4 << 20;
constexpr long keptShown = 3 << 20;

/// Owned by the toolkit, like every window. Not a child of the window that it closes with: that one may go
/// while the user chooses a file here, and a child would go at once, with its dialog still open.
class LogWindow final : public wxFrame {
public:
    LogWindow(wxWindow* owner, wxString const& path, wxString const& gateway);
    ~LogWindow() override;

    bool ShouldPreventAppExit() const override { return false; }
    wxString const& path() const { return m_path; }
    void end();

private:
    void makeLayout();
    wxSizer* makeButtons(wxWindow* parent);
    void bindEvents(wxWindow* owner);
    void onDestroyed(wxWindowDestroyEvent& event);
    void onKey(wxKeyEvent& event);

    void poll();
    void append(wxString const& text);
    /// Returns how many characters.
    long dropOldest();
    bool isAtEnd() const;
    bool isReadingFurtherUp();
    void updateEmptiness();

    void copy();
    void save();
    bool mayReplace(wxString const& destination);
    void saveAs(wxString const& destination);
    /// ShowModal() of a dialog of this window.
    int ask(wxDialog& dialog);

    wxString const m_path;
    Person const m_person;
    LogTail m_tail;
    wxTimer m_timer;
    wxTextCtrl* m_text = nullptr;
    wxStaticText* m_hint = nullptr;
    wxButton* m_copy = nullptr;
    wxButton* m_save = nullptr;
    wxWindow* m_owner = nullptr;  // compared only: it may have gone
    wxDialog* m_dialog = nullptr; // of this window, while it is open
    bool m_ended = false;
    int m_lastScroll = 0; // at the last poll, in the control's unit
    bool m_readingFurtherUp = false;
};

/// The one that is open.
LogWindow* openWindow = nullptr;

LogWindow::LogWindow(wxWindow* owner, wxString const& path, wxString const& gateway)
    : // TRANSLATORS: a window's title; short.
      wxFrame(nullptr, wxID_ANY, _("LOGS_TITLE")),
      m_path(path),
      m_person(Person::current(gateway.utf8_string())),
      m_tail(std::string(path.fn_str())),
      m_timer(this) {
    if (auto const* const frame = dynamic_cast<wxTopLevelWindow*>(wxGetTopLevelParent(owner)))
        SetIcons(frame->GetIcons());
    makeLayout();
    bindEvents(owner);
    poll();
    m_timer.Start(pollInterval);
}

LogWindow::~LogWindow() {
    if (openWindow == this)
        openWindow = nullptr;
}

void LogWindow::makeLayout() {
    Distances const space(*this);
    auto* const panel = new wxPanel(this);
    m_text = makeLogText(panel, GetTitle());
    m_hint = makeLogHint(panel, m_path, FromDIP(defaultSize).x - 4 * space.margin);
    auto* const column = new wxBoxSizer(wxVERTICAL);
    column->Add(m_hint, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxTOP, space.margin));
    column->Add(m_text, wxSizerFlags(1).Expand().Border(wxALL, space.margin));
    column->Add(makeLogPlace(panel, m_path),
                wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, space.margin));
    column->Add(makeButtons(panel),
                wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, space.margin));
    panel->SetSizer(column);
    auto* const whole = new wxBoxSizer(wxVERTICAL);
    whole->Add(panel, wxSizerFlags(1).Expand());
    SetSizer(whole);
    whole->SetSizeHints(this);
    SetClientSize(inCharacters(*this, defaultSize));
    CentreOnScreen();
    m_text->SetFocus();
}

wxSizer* LogWindow::makeButtons(wxWindow* parent) {
    Distances const space(*this);
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(m_copy = new wxButton(parent, wxID_COPY));
    row->AddSpacer(space.gap);
    row->Add(m_save = new wxButton(parent, wxID_SAVE));
    row->AddStretchSpacer();
    row->AddSpacer(space.gap);
    row->Add(new wxButton(parent, wxID_CLOSE));
    return row;
}

void LogWindow::bindEvents(wxWindow* owner) {
    Bind(wxEVT_TIMER, [this](wxTimerEvent&) { poll(); });
    m_copy->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { copy(); });
    m_save->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { save(); });
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { end(); }, wxID_CLOSE);
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { end(); });
    Bind(wxEVT_CHAR_HOOK, &LogWindow::onKey, this);
    m_text->Bind(wxEVT_TEXT_COPY, [this](wxClipboardTextEvent&) { copy(); }); // its keys and its own menu
    if (!owner)
        return;
    m_owner = owner;
    owner->Bind(wxEVT_DESTROY, &LogWindow::onDestroyed, this);
}

void LogWindow::onDestroyed(wxWindowDestroyEvent& event) {
    event.Skip();
    if (event.GetEventObject() == m_owner) // and not one of its children
        end();
}

void LogWindow::onKey(wxKeyEvent& event) {
    if (event.GetKeyCode() == WXK_ESCAPE && !event.HasAnyModifiers())
        end();
    else
        event.Skip();
}

void LogWindow::end() {
    if (openWindow == this)
        openWindow = nullptr;
    m_timer.Stop();
    Hide();
    m_ended = true;
    if (!m_dialog)
        Destroy();
    else if (m_dialog->IsModal())
        m_dialog->EndModal(wxID_CANCEL);
}

void LogWindow::poll() {
    // What is new stays in the file while the user reads further up: text that is added moves the view.
    if (isReadingFurtherUp())
        return;
    LogTail::News const news = m_tail.poll();
    if (news.restarted)
        m_text->Clear();
    if (!news.text.empty())
        append(news.text);
    if (!isAtEnd())
        m_text->ShowPosition(m_text->GetLastPosition());
    updateEmptiness();
}

void LogWindow::append(wxString const& text) {
    long from, to;
    m_text->GetSelection(&from, &to);
    bool const caretAtEnd = to == m_text->GetLastPosition();
    m_text->AppendText(text);
    long const dropped = dropOldest();
    if (!caretAtEnd)
        m_text->SetSelection(std::max(from - dropped, 0L), std::max(to - dropped, 0L));
}

long LogWindow::dropOldest() {
    long const length = m_text->GetLastPosition();
    if (length <= mostShown)
        return 0;
    long count = length - keptShown;
    constexpr long searched = 10000;
    int const lineEnd = m_text->GetRange(count, count + searched).Find('\n');
    if (lineEnd != wxNOT_FOUND)
        count += lineEnd + 1;
    m_text->Remove(0, count);
    m_lastScroll = 0;
    return count;
}

bool LogWindow::isAtEnd() const {
    constexpr int rounding = 2; // pixels
    return m_text->GetScrollPos(wxVERTICAL) + m_text->GetScrollThumb(wxVERTICAL) + rounding >=
           m_text->GetScrollRange(wxVERTICAL);
}

// The control takes its time to arrive at the end of a long text. Only the user moves it towards the begin.
bool LogWindow::isReadingFurtherUp() {
    int const last = std::exchange(m_lastScroll, m_text->GetScrollPos(wxVERTICAL));
    if (isAtEnd())
        m_readingFurtherUp = false;
    else if (m_lastScroll < last)
        m_readingFurtherUp = true;
    return m_readingFurtherUp;
}

void LogWindow::updateEmptiness() {
    bool const empty = m_text->IsEmpty();
    m_copy->Enable(!empty);
    m_save->Enable(!empty);
    if (m_hint->Show(empty))
        m_hint->GetParent()->Layout();
}

void LogWindow::copy() {
    wxString const selection = m_text->GetStringSelection();
    wxClipboardLocker const clipboard;
    if (!clipboard)
        return;
    std::string const text = (selection.empty() ? m_text->GetValue() : selection).utf8_string();
    wxTheClipboard->SetData(new wxTextDataObject(wxString::FromUTF8(privateText(text, m_person))));
}

void LogWindow::save() {
    // Without wxFD_OVERWRITE_PROMPT: GTK asks that in a loop of its own, which nothing could end.
    wxFileDialog dialog(this, GetTitle(), wxStandardPaths::Get().GetDocumentsDir(),
                        wxFileName(m_path).GetFullName(), wxFileSelectorDefaultWildcardStr, wxFD_SAVE);
    while (!m_ended && ask(dialog) == wxID_OK && !m_ended)
        if (mayReplace(dialog.GetPath()) && !m_ended)
            return saveAs(dialog.GetPath());
}

bool LogWindow::mayReplace(wxString const& destination) {
    if (!wxFileName::FileExists(destination))
        return true;
    // TRANSLATORS: a question with the answers yes and no. %s is the path of a file.
    wxString text = _("LOGS_REPLACE");
    text.Replace("%s", destination);
    wxMessageDialog question(this, text, GetTitle(), wxYES_NO | wxNO_DEFAULT | wxCENTRE | wxICON_QUESTION);
    return ask(question) == wxID_YES;
}

void LogWindow::saveAs(wxString const& destination) {
    wxBusyCursor const busy;
    std::error_code const error =
        copyPrivately(std::string(m_path.fn_str()), std::string(destination.fn_str()), m_person);
    if (!error)
        return;
    log(ERROR, "LogWindow", "saveAs", "Can not save the log: " + String::copyOf(error.message()));
    // TRANSLATORS: %s is the path of the file that was to be written.
    wxString text = _("LOGS_NOT_SAVED");
    text.Replace("%s", destination);
    wxMessageDialog message(this, text, GetTitle(), wxOK | wxCENTRE | wxICON_ERROR);
    ask(message);
}

int LogWindow::ask(wxDialog& dialog) {
    m_dialog = &dialog;
    useOwnLabels(dialog);
    int const answer = dialog.ShowModal();
    m_dialog = nullptr;
    if (m_ended)
        Destroy();
    return answer;
}

} // namespace

void showLogWindow(wxWindow* parent, wxString const& path, wxString const& gateway) {
    if (openWindow && openWindow->path() != path)
        openWindow->end();
    if (!openWindow)
        openWindow = new LogWindow(parent, path, gateway);
    openWindow->Show();
    openWindow->Iconize(false);
    openWindow->Raise();
}

} // namespace quillon
