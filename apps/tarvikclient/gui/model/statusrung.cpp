#include "tarvikclient/gui/model/statusrung.h"

namespace quillon {

void StatusRungChoice::setWatcher(bool present) {
    m_watcher = present;
    choose();
}

void StatusRungChoice::setTray(bool available) {
    m_tray = available;
    choose();
}

void StatusRungChoice::stopWaiting() {
    if (!m_watcher)
        setWatcher(false);
}

void StatusRungChoice::choose() {
    if (!m_watcher)
        return;
    StatusRung const best = *m_watcher ? StatusRung::notifierItem
                            : m_tray   ? StatusRung::tray
                                       : StatusRung::none;
    if (m_rung == best)
        return;
    m_rung = best;
    m_taken(best);
}

} // namespace quillon
