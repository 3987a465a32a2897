// What a platform supplies for timed waits on a clock that nobody can set.
#pragma once

#include <pthread.h>

#include <ctime>

namespace quillon::native {

/// Initialises `condition` so that timedWait() can be used with it.
void initCondition(pthread_cond_t& condition);

/// The moment `ms` milliseconds from now, in the form that timedWait() takes.
timespec deadlineIn(unsigned ms);

/// Waits until signalled (0), the deadline has passed (ETIMEDOUT) or another error. `mutex` is held.
int timedWait(pthread_cond_t& condition, pthread_mutex_t& mutex, timespec const& deadline);

} // namespace quillon::native
