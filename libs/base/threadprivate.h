// The native side of a Thread.
#pragma once

#include "base/condition.h"
#include "base/dict.h"
#include "base/string.h"
#include "base/strings.h"
#include "base/synchrothread.h"

#include <atomic>
#include <map>
#include <memory>

namespace quillon {

class Thread;

/// What a thread keeps for itself under a key.
class ThreadLocalData {
public:
    virtual ~ThreadLocalData() = default;
};

/// A running synchronised thread, as the table of live threads holds it.
struct LiveThread {
    Thread* thread = nullptr;
};

/// The process-wide part: which synchronised threads live, and how many.
class ThreadPrivateBase {
public:
    using LiveThreads = Dict<pthread_t, LiveThread>;

    /// The count of synchronised threads; never destroyed.
    static SynchroThread& ms_synchro();

    static void enter(Thread* thread);
    static void leave();
    /// The names of the live synchronised threads.
    static Strings names();
    /// The name of the calling thread if it is a live synchronised one, else the null string.
    static String myName();

private:
    // Both are made at their first use and never destroyed.
    static CriticalSection& threadsLock();
    static LiveThreads& ms_threads();
};

/// One thread's state. Everything but the conditions is guarded by the mutex.
class ThreadPrivate : public ThreadPrivateBase {
public:
    ThreadPrivate(Thread& owner, int priority);
    ~ThreadPrivate();
    ThreadPrivate(ThreadPrivate const&) = delete;
    ThreadPrivate& operator=(ThreadPrivate const&) = delete;

private:
    friend class Thread;

    /// The native thread's body; `argument` is the Thread.
    static void* entry(void* argument);
    void begin(bool synchronised);
    void end(bool synchronised);
    // The same as the system calls it; `self` is the ThreadPrivate.
    static void endSynchronised(void* self);
    static void endOther(void* self);
    void clearLocalData();
    /// Waits for the native thread of a finished run, so that nothing of it is left, its thread-specific data
    /// included. Under the mutex.
    void reap();

    Thread& m_owner;
    Mutex m_mutex;
    bool m_running = false;
    bool m_finished = false;
    unsigned m_announcements = 0; // how often a new thread has come to run
    bool m_hasHandle = false;
    pthread_t m_handle{};
    bool m_unreaped = false; // m_native has been started and not yet waited for
    pthread_t m_native{};
    pthread_attr_t m_attributes;
    Condition m_started;
    Condition m_ended;
    Condition m_woken;
    std::atomic<unsigned> m_wakeUps{0};
    std::map<String, std::unique_ptr<ThreadLocalData>> m_localData;
};

} // namespace quillon
