// A request to stop that cannot be missed.
#pragma once

#include "base/condition.h"

namespace quillon {

/// Set once by stop(), on any thread; seen by a loop that asks, and cutting short a loop that waits. A stop
/// that comes before the loop has begun counts as well.
class StopSignal {
public:
    void stop();
    bool isStopped() const;
    /// Waits `ms` milliseconds; true as soon as stop() has been called.
    bool wait(unsigned ms);

private:
    mutable Mutex m_mutex;
    Condition m_changed;
    bool m_stopped = false;
};

} // namespace quillon
