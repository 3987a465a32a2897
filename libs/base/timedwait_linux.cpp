#include "base/timedwait.h"

namespace quillon::native {

void initCondition(pthread_cond_t& condition) {
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
    pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    pthread_cond_init(&condition, &attributes);
    pthread_condattr_destroy(&attributes);
}

int timedWait(pthread_cond_t& condition, pthread_mutex_t& mutex, timespec const& deadline) {
    return pthread_cond_timedwait(&condition, &mutex, &deadline);
}

} // namespace quillon::native
