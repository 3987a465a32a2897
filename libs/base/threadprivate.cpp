#include "base/threadprivate.h"

#include "base/exception.h"
#include "base/log.h"
#include "base/stringconversion.h"
#include "base/strings.h"
#include "base/thread.h"
#include "base/threadmanager.h"
#include "base/threadname.h"

#include <cerrno>
#include <csignal>

namespace quillon {

namespace {

constexpr unsigned exitTimeoutMs = 5000;
constexpr unsigned osNameLength = 15;

} // namespace

SynchroThread& ThreadPrivateBase::ms_synchro() {
    static auto& synchro = *new SynchroThread(exitTimeoutMs, &ThreadPrivateBase::names);
    return synchro;
}

CriticalSection& ThreadPrivateBase::threadsLock() {
    static auto& lock = *new CriticalSection;
    return lock;
}

ThreadPrivateBase::LiveThreads& ThreadPrivateBase::ms_threads() {
    static auto& threads = *new LiveThreads;
    return threads;
}

void ThreadPrivateBase::enter(Thread* thread) {
    ms_synchro().increment();
    TSynchronize<CriticalSection> lock(threadsLock());
    ms_threads().set(pthread_self(), LiveThread{thread});
}

void ThreadPrivateBase::leave() {
    {
        TSynchronize<CriticalSection> lock(threadsLock());
        ms_threads().remove(pthread_self());
    }
    ms_synchro().decrement();
}

Strings ThreadPrivateBase::names() {
    TSynchronize<CriticalSection> lock(threadsLock());
    Strings names;
    for (auto const& live : ms_threads())
        names.add(live.value.thread->getName());
    return names;
}

String ThreadPrivateBase::myName() {
    TSynchronize<CriticalSection> lock(threadsLock());
    auto const found = ms_threads().find(pthread_self());
    return found == ms_threads().end() ? String() : found->value.thread->getName();
}

ThreadPrivate::ThreadPrivate(Thread& owner, int) : m_owner(owner) {
    pthread_attr_init(&m_attributes);
}

ThreadPrivate::~ThreadPrivate() {
    pthread_attr_destroy(&m_attributes);
    if (!m_hasHandle) {
        reap();
        return;
    }
    // The owner destroyed a running thread, which is about to use freed memory: nothing better than the end.
    int const error = pthread_kill(m_handle, SIGKILL);
    if (error == ESRCH)
        log(ERROR, "Thread", "~ThreadPrivate", "Oops thread " + m_owner.getName() + " was killed in my back");
    else if (error != 0)
        log(ERROR, "ThreadPrivate", String(), "unhandled code " + toString(error));
}

void ThreadPrivate::begin(bool synchronised) {
    native::nameThisThread(m_owner.getName().range(0, osNameLength).str());
    threadManager().registerCurrentThread(&m_owner);
    if (synchronised)
        enter(&m_owner);
    // Last, so that whoever waits in run() finds the thread counted and named.
    TSynchronize<Mutex> lock(m_mutex);
    m_handle = pthread_self();
    m_hasHandle = true;
    ++m_announcements;
    m_started.broadcast();
}

void ThreadPrivate::reap() {
    if (!std::exchange(m_unreaped, false))
        return;
    if (pthread_equal(m_native, pthread_self())) // a thread that destroys its own object on its way out
        pthread_detach(m_native);
    else
        pthread_join(m_native, nullptr);
}

void ThreadPrivate::clearLocalData() {
    decltype(m_localData) localData; // destroyed without the lock: its destructors are not ours
    TSynchronize<Mutex> lock(m_mutex);
    localData.swap(m_localData);
}

void ThreadPrivate::end(bool synchronised) {
    threadManager().removeCurrentThread(&m_owner);
    clearLocalData();
    TSynchronize<Mutex> lock(m_mutex);
    m_running = false;
    m_finished = true;
    m_hasHandle = false;
    if (synchronised)
        leave();
    m_ended.broadcast();
    // Nothing of the object is touched once the lock is free: its owner may destroy it then.
}

void ThreadPrivate::endSynchronised(void* self) {
    static_cast<ThreadPrivate*>(self)->end(true);
}

void ThreadPrivate::endOther(void* self) {
    static_cast<ThreadPrivate*>(self)->end(false);
}

void* ThreadPrivate::entry(void* argument) {
    Thread& thread = *static_cast<Thread*>(argument);
    bool const synchronised = thread.m_synchronised;
    ThreadPrivate& self = *thread.m_private;
    self.begin(synchronised);
    // Runs also when the thread is cancelled, or whoever waits for it would wait for ever.
    pthread_cleanup_push(synchronised ? &ThreadPrivate::endSynchronised : &ThreadPrivate::endOther, &self);
    try {
        thread.main();
    } catch (std::exception const& e) {
        log(ERROR, "Thread", "thread_func", "Exception caught in main()");
        log(ERROR, "Thread", "thread_func", thread.getName() + ": " + e.what());
    }
    pthread_cleanup_pop(true);
    return nullptr;
}

} // namespace quillon
