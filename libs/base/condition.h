// Condition variables over any lock of the family.
#pragma once

#include "base/deadline.h"
#include "base/mutex.h"

#include <concepts>

namespace quillon {

/// The native parts of a Condition: the variable, and the mutex that stands in for a lock that has none.
class ConditionPrivateData {
public:
    ConditionPrivateData();
    ~ConditionPrivateData();
    ConditionPrivateData(ConditionPrivateData const&) = delete;
    ConditionPrivateData& operator=(ConditionPrivateData const&) = delete;

    pthread_cond_t native;
    pthread_mutex_t privateMutex = PTHREAD_MUTEX_INITIALIZER;
};

/// A condition variable. All who wait on one Condition at a time use the same lock. A wake-up without a
/// signal is possible: test what is awaited in a loop. With a NoMutex a signal that comes before the wait is
/// lost.
class Condition {
public:
    /// Waits until signalled. `mutex` is held by the caller, free during the wait and held again afterwards.
    void wait(IMutex& mutex);
    /// Waits at most `ms` milliseconds; true when signalled, false on time-out. The clock is one that nobody
    /// can set.
    bool wait(unsigned ms, IMutex& mutex);
    /// Waits until `isMet`, which is called with the lock held, at most `ms` milliseconds; whether it is.
    template <std::predicate Predicate>
    bool waitUntil(Predicate isMet, unsigned ms, IMutex& mutex) {
        Deadline const deadline{std::chrono::milliseconds(ms)};
        bool met = isMet();
        for (unsigned left = deadline.left(); !met && left > 0; left = deadline.left()) {
            wait(left, mutex);
            met = isMet();
        }
        return met;
    }
    /// Wakes one thread that waits. Any thread; holding the lock is not needed.
    void signal();
    /// Wakes all threads that wait. Any thread.
    void broadcast();

private:
    ConditionPrivateData m_data;
};

} // namespace quillon
