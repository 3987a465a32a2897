#include "tarvikclient/stopsignal.h"

namespace quillon {

void StopSignal::stop() {
    TSynchronize<Mutex> lock(m_mutex);
    m_stopped = true;
    m_changed.broadcast();
}

bool StopSignal::isStopped() const {
    TSynchronize<Mutex> lock(m_mutex);
    return m_stopped;
}

bool StopSignal::wait(unsigned ms) {
    TSynchronize<Mutex> lock(m_mutex);
    return m_changed.waitUntil([this] { return m_stopped; }, ms, m_mutex);
}

} // namespace quillon
