#include "tarvikclient/stopsignal.h"

#include <chrono>

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
    using namespace std::chrono;
    auto const deadline = steady_clock::now() + milliseconds(ms);
    TSynchronize<Mutex> lock(m_mutex);
    while (!m_stopped) {
        auto const left = ceil<milliseconds>(deadline - steady_clock::now()).count();
        if (left <= 0)
            return false;
        m_changed.wait(static_cast<unsigned>(left), m_mutex);
    }
    return true;
}

} // namespace quillon
