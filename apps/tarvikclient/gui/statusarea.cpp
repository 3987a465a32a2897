#include "tarvikclient/gui/statusarea.h"

#include "base/log.h"
#include "tarvikclient/gui/platform/notifierwatch.h"
#include "tarvikclient/gui/platform/statusitem.h"
#include "tarvikclient/gui/platform/tray.h"
#include "tarvikclient/gui/systray.h"

#include <wx/artprov.h>
#include <wx/menu.h>
#include <wx/timer.h>

namespace quillon {

namespace {

/// A bus that is there answers within a few milliseconds. One that takes longer is not waited for: the next
/// rung is taken and left again when a watcher shows up. Taking it at once would flash an icon, or the panel,
/// at every start.
constexpr int patience = 200; // milliseconds

char const* textOf(StatusRung rung) {
    switch (rung) {
    case StatusRung::notifierItem:
        return "status icon: StatusNotifierItem";
    case StatusRung::tray:
        return "status icon: system tray";
    case StatusRung::none:
        break;
    }
    return "status icon: none, the panel carries the menu";
}

char const* suffixOf(SessionMood mood) {
    switch (mood) {
    case SessionMood::busy:
        return "-busy";
    case SessionMood::connected:
        return "-connected";
    case SessionMood::trouble:
        return "-trouble";
    case SessionMood::quiet:
        break;
    }
    return "";
}

void showInTray(TarvikSystrayIcon& icon, SessionMood mood, wxString const& text) {
    // Found in the bundle of that name. GetIconBundle() itself trips over a bundle that is missing.
    wxString const name = wxString("tarvik-logo") + suffixOf(mood);
    wxIcon const picture = wxArtProvider::GetIcon(name, wxART_OTHER, wxSize(16, 16));
    icon.SetIcon(picture, text.empty() ? wxString("Tarvik Client") : "Tarvik Client\n" + text);
}

/// In one colour, which the desktop's panel may replace by its own.
StatusLook lookOf(SessionMood mood, wxString const& text) {
    return {wxString("tarvikclient") + suffixOf(mood) + "-symbolic", text, mood == SessionMood::trouble};
}

} // namespace

class StatusArea::Watch {
public:
    Watch(TarvikSystrayIcon& icon, Listener listener);

    void start();
    void withdraw();
    void stop();
    void tell(SessionMood mood, wxString const& text);

private:
    void take(StatusRung rung);
    void showOn(StatusRung rung);
    void onWatcher(bool present);
    void lookForTray() { m_choice.setTray(isTrayAvailable()); }

    TarvikSystrayIcon& m_icon;
    Listener m_listener;
    StatusRungChoice m_choice;
    StatusRung m_shownOn = StatusRung::none;
    SessionMood m_mood = SessionMood::quiet;
    wxString m_text;
    wxTimer m_patience;
    wxTimer m_trayPoll;
    std::unique_ptr<StatusItem> m_item;
    std::unique_ptr<NotifierWatch> m_watcher;
    bool m_started = false;
    bool m_withdrawn = false;
    bool m_stopped = false;
};

StatusArea::Watch::Watch(TarvikSystrayIcon& icon, Listener listener)
    : m_icon(icon), m_listener(std::move(listener)), m_choice([this](StatusRung rung) { take(rung); }) {
    m_patience.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { m_choice.stopWaiting(); });
    m_trayPoll.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { lookForTray(); });
}

void StatusArea::Watch::start() {
    if (m_started || m_stopped)
        return;
    m_started = true;
    lookForTray();
    m_patience.StartOnce(patience);
    m_watcher = std::make_unique<NotifierWatch>([this](bool present) { onWatcher(present); });
}

void StatusArea::Watch::withdraw() {
    m_withdrawn = true;
    if (!m_started || m_choice.hasTaken())
        stop();
}

void StatusArea::Watch::stop() {
    m_stopped = true;
    m_patience.Stop();
    m_trayPoll.Stop();
    m_watcher.reset();
    m_icon.RemoveIcon();
    // Kept until the end: some hosts ask the item about its new state before they hide it.
    if (m_item)
        m_item->hide();
}

void StatusArea::Watch::onWatcher(bool present) {
    if (m_stopped)
        return;
    // The tray is not followed while there is an item.
    if (!present)
        lookForTray();
    m_choice.setWatcher(present);
}

void StatusArea::Watch::take(StatusRung rung) {
    m_patience.Stop();
    if (m_withdrawn) {
        stop();
        if (rung != StatusRung::none)
            return;
    } else {
        showOn(rung);
    }
    log(TRACE, "StatusArea", "take", textOf(rung));
    m_listener(rung);
}

void StatusArea::Watch::showOn(StatusRung rung) {
    m_item.reset();
    m_icon.RemoveIcon();
    m_shownOn = rung;
    // The tray comes and goes without a word to programs that have no icon in it.
    if (int const period = trayPollPeriod(); rung == StatusRung::notifierItem || period == 0)
        m_trayPoll.Stop();
    else
        m_trayPoll.Start(period);
    if (rung == StatusRung::notifierItem)
        m_item = std::make_unique<StatusItem>(*std::unique_ptr<wxMenu>(m_icon.CreatePopupMenu()), m_icon,
                                              lookOf(m_mood, m_text));
    else if (rung == StatusRung::tray)
        showInTray(m_icon, m_mood, m_text);
}

void StatusArea::Watch::tell(SessionMood mood, wxString const& text) {
    m_mood = mood;
    m_text = text;
    if (m_stopped)
        return;
    if (m_item)
        m_item->setLook(lookOf(mood, text));
    else if (m_shownOn == StatusRung::tray)
        showInTray(m_icon, mood, text);
}

StatusArea::StatusArea(TarvikSystrayIcon& icon, Listener listener)
    : m_watch(std::make_unique<Watch>(icon, std::move(listener))) {}

StatusArea::~StatusArea() {
    m_watch->stop();
}

void StatusArea::show() {
    m_watch->start();
}

void StatusArea::tell(SessionMood mood, wxString const& text) {
    m_watch->tell(mood, text);
}

void StatusArea::remove() {
    m_watch->withdraw();
}

} // namespace quillon
