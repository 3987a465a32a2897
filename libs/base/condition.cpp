#include "base/condition.h"

#include "base/log.h"
#include "base/timedwait.h"

#include <cerrno>

namespace quillon {

namespace native {

timespec deadlineIn(unsigned ms) {
    timespec moment{};
    clock_gettime(CLOCK_MONOTONIC, &moment);
    moment.tv_sec += ms / 1000;
    moment.tv_nsec += static_cast<long>(ms % 1000) * 1000000;
    if (moment.tv_nsec >= 1000000000) {
        moment.tv_sec += 1;
        moment.tv_nsec -= 1000000000;
    }
    return moment;
}

} // namespace native

namespace {

/// The native mutex to wait with: the lock's own, or the private one while the lock itself is let go.
class NativeLock {
public:
    NativeLock(IMutex& mutex, pthread_mutex_t& privateMutex)
        : m_mutex(mutex), m_own(mutex.getPthreadMutex()), m_private(privateMutex) {
        if (!m_own) {
            pthread_mutex_lock(&m_private);
            m_mutex.unlock();
        }
    }
    ~NativeLock() {
        if (!m_own) {
            // In this order: another thread may hold the lock and be about to take the private mutex.
            pthread_mutex_unlock(&m_private);
            m_mutex.lock();
        }
    }
    NativeLock(NativeLock const&) = delete;
    NativeLock& operator=(NativeLock const&) = delete;

    pthread_mutex_t& native() noexcept { return m_own ? *m_own : m_private; }

private:
    IMutex& m_mutex;
    pthread_mutex_t* m_own;
    pthread_mutex_t& m_private;
};

} // namespace

ConditionPrivateData::ConditionPrivateData() {
    native::initCondition(native);
}

ConditionPrivateData::~ConditionPrivateData() {
    pthread_cond_destroy(&native);
    pthread_mutex_destroy(&privateMutex);
}

void Condition::wait(IMutex& mutex) {
    NativeLock lock(mutex, m_data.privateMutex);
    int error;
    do
        error = pthread_cond_wait(&m_data.native, &lock.native());
    while (error == EINTR);
    if (error != 0)
        log(ERROR, "Condition", "wait", "bad call to pthread_cond_wait");
}

bool Condition::wait(unsigned ms, IMutex& mutex) {
    timespec const deadline = native::deadlineIn(ms);
    NativeLock lock(mutex, m_data.privateMutex);
    int error;
    do
        error = native::timedWait(m_data.native, lock.native(), deadline);
    while (error == EINTR);
    if (error != 0 && error != ETIMEDOUT)
        log(ERROR, "Condition", "wait", "bad call to pthread_cond_wait");
    return error == 0;
}

void Condition::signal() {
    if (pthread_cond_signal(&m_data.native) != 0)
        log(ERROR, "Condition", "signal", "bad call to pthread_cond_signal");
}

void Condition::broadcast() {
    if (pthread_cond_broadcast(&m_data.native) != 0)
        log(ERROR, "Condition", "broadcast", "bad call to pthread_cond_broadcast");
}

} // namespace quillon
