#include "tarvikclient/gui/handover.h"

#include "base/console.h"
#include "tarvikclient/client.h"
#include "tarvikclient/gui/artprovider.h"
#include "tarvikclient/gui/dialoglayout.h"
#include "tarvikclient/gui/model/language.h"

#include <unistd.h>
#include <wx/app.h>
#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/intl.h>
#include <wx/log.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>
#include <wx/stockitem.h>
#include <wx/timer.h>

#include <cstdio>
#include <cstdlib>
#include <functional>

namespace quillon {

namespace {

constexpr std::chrono::milliseconds unnoticed{3000};
constexpr int pollMs = 100;
constexpr int widthInCharacters = 56;
constexpr int exitFailure = 1;

/// Says what is waited for and then, unless it goes, that it was in vain.
class HandOverDialog final : public wxDialog {
public:
    using Role = SingleInstance::Role;
    /// Gives the outcome, or nothing yet.
    using Ask = std::function<std::optional<Role>()>;

    explicit HandOverDialog(Ask ask);

private:
    wxSizer* makeTexts();
    void say(wxString const& sentence, wxString const& advice);
    void poll();

    Ask const m_ask;
    wxStaticText* const m_sentence = new wxStaticText(this, wxID_ANY, wxString());
    wxStaticText* const m_advice = new wxStaticText(this, wxID_ANY, wxString());
    wxTimer m_timer{this};
};

HandOverDialog::HandOverDialog(Ask ask)
    : wxDialog(nullptr, wxID_ANY, _("TarvikClient"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxDIALOG_NO_PARENT),
      m_ask(std::move(ask)) {
    SetIcons(programIcons());
    Distances const space(*this);
    auto* const upper = new wxBoxSizer(wxHORIZONTAL);
    upper->Add(
        new wxStaticBitmap(this, wxID_ANY, wxArtProvider::GetBitmap(wxART_INFORMATION, wxART_MESSAGE_BOX)), 0,
        wxRIGHT, space.margin);
    upper->Add(makeTexts(), 1);
    auto* const quit = new wxButton(this, wxID_CANCEL, wxGetStockLabel(wxID_EXIT));
    auto* const rows = new wxBoxSizer(wxVERTICAL);
    rows->Add(upper, 1, wxEXPAND | wxALL, space.margin);
    rows->Add(quit, 0, wxALIGN_RIGHT | wxLEFT | wxRIGHT | wxBOTTOM, space.margin);
    SetSizer(rows);
    quit->SetDefault();
    quit->SetFocus();
    // TRANSLATORS: shown while another process of this program is asked to take a link.
    say(_("HANDOVER_WAITING"), wxString());
    Bind(wxEVT_TIMER, [this](wxTimerEvent&) { poll(); });
    m_timer.Start(pollMs);
    poll();
}

wxSizer* HandOverDialog::makeTexts() {
    m_sentence->SetFont(m_sentence->GetFont().Bold());
    auto* const texts = new wxBoxSizer(wxVERTICAL);
    texts->Add(m_sentence, 0, wxBOTTOM, Distances(*this).gap);
    texts->Add(m_advice);
    return texts;
}

void HandOverDialog::say(wxString const& sentence, wxString const& advice) {
    int const width = widthInCharacters * GetCharWidth();
    m_sentence->SetLabelText(sentence);
    m_sentence->Wrap(width);
    m_advice->SetLabelText(advice);
    m_advice->Wrap(width);
    GetSizer()->SetSizeHints(this);
    centre(*this);
}

void HandOverDialog::poll() {
    std::optional<Role> const role = m_ask();
    if (!role)
        return;
    m_timer.Stop();
    if (*role == Role::unheard)
        // TRANSLATORS: the other process has not taken the link; the second text says what to do then.
        say(_("HANDOVER_FAILED"), _("HANDOVER_ADVICE"));
    else if (IsModal())
        EndModal(wxID_OK);
}

/// The claim may have long to go, and there is nothing to be put in order.
[[noreturn]] void leaveAtOnce() {
    constexpr unsigned drainMs = 500;
    console->drain(drainMs);
    _exit(exitFailure);
}

} // namespace

HandOver::HandOver(SingleInstance& instance, String const& url)
    : m_url(url.clone()),
      m_claim(std::async(std::launch::async, [this, &instance] { return instance.claim(m_url); })) {}

HandOver::~HandOver() = default;

bool HandOver::isDecided(std::chrono::milliseconds wait) const {
    return m_role || m_claim.wait_for(wait) == std::future_status::ready;
}

SingleInstance::Role HandOver::take() {
    if (m_role)
        return *m_role;
    m_role = m_claim.get();
    if (*m_role == SingleInstance::Role::unheard)
        std::fputs("tarvikclient: the client that is running has not taken the URL\n", stderr);
    return *m_role;
}

SingleInstance::Role HandOver::finish(int& argc, char** argv) {
    bool const soon = isDecided(unnoticed);
    if (soon && take() != SingleInstance::Role::unheard)
        return *m_role;
    return startToolkit(argc, argv) ? finishInWindow() : take();
}

bool HandOver::startToolkit(int& argc, char** argv) {
    wxLogNull const quiet; // without a display there is no window, and no more to be said of that
    m_toolkit = std::make_unique<wxInitializer>(argc, argv);
    return m_toolkit->IsOk();
}

SingleInstance::Role HandOver::finishInWindow() {
    wxTheApp->SetAppName("tarvikclient"); // by which the pictures and the catalogue are found
    wxLocale locale;
    initLanguage(locale, languageOfCode(TarvikClient::getLangFromArg(m_url)));
    TarvikClientArtProvider::init();
    wxArtProvider::Push(new TarvikClientArtProvider);
    HandOverDialog dialog([this] { return isDecided() ? std::optional(take()) : std::nullopt; });
    dialog.ShowModal();
    if (!isDecided())
        leaveAtOnce();
    wxArtProvider::Pop();
    return take();
}

int HandOver::runApplication(int& argc, char** argv) {
    if (!m_toolkit)
        return wxEntry(argc, argv);
    if (!m_toolkit->IsOk())
        std::fputs("tarvikclient: there is no display\n", stderr); // it is not to be started again
    if (!m_toolkit->IsOk() || !wxTheApp->CallOnInit())
        return exitFailure;
    int const code = wxTheApp->OnRun();
    wxTheApp->OnExit();
    return code;
}

} // namespace quillon
