#include "tarvikclient/gui/throttle.h"

#include <utility>

namespace quillon {

void Throttle::request() {
    m_wanted = true;
    if (IsRunning())
        return;
    StartOnce(pause);
    flush();
}

void Throttle::flush() {
    if (std::exchange(m_wanted, false))
        m_act();
}

void Throttle::Notify() {
    if (!m_wanted)
        return;
    StartOnce(pause);
    flush();
}

} // namespace quillon
