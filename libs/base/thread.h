// Named threads over POSIX threads.
#pragma once

#include "base/threadprivate.h"

#include <memory>

namespace quillon {

/// A thread whose body is main(), given by a subclass. Not running, then running, then finished; it may be
/// run again. Destroying a Thread does not stop it: its owner makes main() return and joins it first. All
/// operations may be called on any thread.
class Thread {
public:
    /// Accepted and ignored: every thread runs at the system's normal priority.
    enum Priority { PRIORITY_NORMAL = 0, PRIORITY_LOW = 1, PRIORITY_HIGH = 2 };

    /// No time limit, in milliseconds. A limit above 2^32 - 1, seven weeks, counts as that.
    static constexpr unsigned long noLimit = static_cast<unsigned long>(-1);

    /// A `synchronised` thread is named in log lines and is waited for, within bounds, when the process ends.
    Thread(String const& name, Priority priority, bool synchronised);
    Thread(Thread const&) = delete;
    Thread& operator=(Thread const&) = delete;
    virtual ~Thread();

    /// The body, on the new thread. An Exception that escapes it is logged and ends the thread normally.
    virtual void main() = 0;

    /// Starts the thread; with `noWait`, without waiting until it runs. Does nothing and returns false when
    /// it is already running. That no thread can be started is fatal.
    bool run(bool noWait = false);
    /// Waits until the thread has finished; false after `timeoutMs` milliseconds, and at once when called by
    /// the thread itself. True when it is not running.
    bool join(unsigned long timeoutMs = noLimit);
    bool isRunning() const;
    /// Whether the caller is this thread.
    bool isMyThread() const;

    String getName() const;
    void setName(String const& name);
    /// In bytes; for the next run().
    void setStackSize(unsigned bytes);

    /// Called by the thread itself with `mutex` held: waits until wakeUp() or for `ms` milliseconds. True
    /// when woken.
    bool sleep(unsigned long ms, IMutex& mutex);
    /// As sleep(), but returns only when woken or when the whole time has passed without a wakeUp().
    bool wait(unsigned long ms, IMutex& mutex);
    /// Wakes sleep() and wait(). A caller that does not hold the sleeper's mutex may come before the sleep
    /// has begun and wake nobody.
    void wakeUp();

    /// Keeps `data` under `key` until the thread ends, is given another one or the key is removed. Owns it.
    void setLocalData(String const& key, ThreadLocalData* data);
    ThreadLocalData* getLocalData(String const& key) const;
    void removeLocalData(String const& key);

    /// The toolkit thread that runs the caller, or null.
    static Thread* getCurrentThread();
    static pthread_t getMyId();
    /// The caller's name if it is a synchronised toolkit thread, else its native handle.
    static String getMyIdString();
    static unsigned getNbCpus();
    /// Waits until no synchronised thread but the caller is left; false after `ms` milliseconds.
    static bool waitAllThread(unsigned ms);

private:
    friend class ThreadPrivate;

    mutable Mutex m_nameMutex;
    String m_name;
    bool const m_synchronised;
    std::unique_ptr<ThreadPrivate> m_private;
};

/// Stands for the process's initial thread.
class MainThread final : public Thread {
public:
    MainThread() : Thread("MainThread", PRIORITY_NORMAL, true) {}
    /// Never called.
    void main() override;
};

} // namespace quillon
