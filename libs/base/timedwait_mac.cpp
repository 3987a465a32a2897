#include "base/timedwait.h"

#include <cerrno>

namespace quillon::native {

// macOS has no clock attribute for conditions but a wait for a length of time; the deadline is kept on the
// clock that does not move when somebody sets the time of day.

void initCondition(pthread_cond_t& condition) {
    pthread_cond_init(&condition, nullptr);
}

int timedWait(pthread_cond_t& condition, pthread_mutex_t& mutex, timespec const& deadline) {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    timespec left{deadline.tv_sec - now.tv_sec, deadline.tv_nsec - now.tv_nsec};
    if (left.tv_nsec < 0) {
        left.tv_sec -= 1;
        left.tv_nsec += 1000000000;
    }
    if (left.tv_sec < 0)
        return ETIMEDOUT;
    return pthread_cond_timedwait_relative_np(&condition, &mutex, &left);
}

} // namespace quillon::native
