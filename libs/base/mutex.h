// The family of locks.
#pragma once

#include <pthread.h>

namespace quillon {

/// A lock as a Condition and a TSynchronize see it.
class IMutex {
public:
    constexpr IMutex() noexcept = default;
    IMutex(IMutex const&) = delete;
    IMutex& operator=(IMutex const&) = delete;
    virtual ~IMutex() = default;

    virtual void lock() = 0;
    virtual void unlock() = 0;
    /// The native mutex to wait with, or null when there is none. Belongs to this object.
    virtual pthread_mutex_t* getPthreadMutex() noexcept { return nullptr; }
};

/// A lock that one thread holds at a time; not recursive.
class Mutex : public IMutex {
public:
    constexpr Mutex() noexcept = default;
    ~Mutex() override { pthread_mutex_destroy(&m_native); }

    void lock() override { pthread_mutex_lock(&m_native); }
    void unlock() override { pthread_mutex_unlock(&m_native); }
    pthread_mutex_t* getPthreadMutex() noexcept override { return &m_native; }

private:
    pthread_mutex_t m_native = PTHREAD_MUTEX_INITIALIZER;
};

/// The lock inside a container.
class InternalMutex final : public Mutex {};

/// The lock around a process-wide table.
class CriticalSection final : public Mutex {};

/// No lock, for callers that need an IMutex and no locking.
class NoMutex final : public IMutex {
public:
    constexpr NoMutex() noexcept = default;
    void lock() override {}
    void unlock() override {}
};

/// Serves every caller that needs an IMutex and no locking.
inline constinit NoMutex nomutex;

/// Holds a lock for the length of a scope.
template <class T>
class TSynchronize {
public:
    explicit TSynchronize(T& mutex) : m_mutex(mutex) { m_mutex.lock(); }
    ~TSynchronize() { m_mutex.unlock(); }
    TSynchronize(TSynchronize const&) = delete;
    TSynchronize& operator=(TSynchronize const&) = delete;

private:
    T& m_mutex;
};

} // namespace quillon
