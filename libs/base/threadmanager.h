// Which toolkit thread runs the calling native thread.
#pragma once

#include "base/thread.h"

#include <vector>

namespace quillon {

/// The register of running toolkit threads. One per process, made at its first use. Any thread.
class ThreadManager {
public:
    using MapThread = Dict<pthread_t, Thread*>;

    /// Makes the MainThread object, which stands for the calling thread, and the thread-specific key. Called
    /// once, with the manager.
    void init();
    /// Undoes init(). Only when no toolkit thread runs.
    void uninit();

    void registerCurrentThread(Thread* thread);
    void removeCurrentThread(Thread* thread);
    /// The toolkit thread that runs the caller, or null.
    Thread* getCurrentThread() const;
    std::vector<Thread*> getRunningThreads() const;
    /// Asks the system to cancel every toolkit thread but the caller and the console's task, which has lines
    /// to write to the last. What they hold is not released: for a process about to end.
    void killAllThreads();

private:
    MainThread* m_mainThread = nullptr;
    pthread_key_t m_currentThreadKey{};
    bool m_hasKey = false;
    mutable CriticalSection m_lock;
    MapThread m_threads;
};

/// The process's manager.
ThreadManager& threadManager();

} // namespace quillon
