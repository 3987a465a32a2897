// Lets process exit wait a bounded time for threads.
#pragma once

#include "base/condition.h"
#include "base/strings.h"

namespace quillon {

/// Counts threads that are to end before the process does. Any thread.
class SynchroThread {
public:
    /// Lists the names of the threads that are counted.
    using Names = Strings (*)();

    /// `timeoutMs`: how long exit waits, in milliseconds.
    SynchroThread(unsigned timeoutMs, Names survivors) : m_timeoutMs(timeoutMs), m_survivors(survivors) {}
    /// Waits as waitAtExit() does.
    ~SynchroThread() { waitAtExit(); }

    void increment();
    void decrement();
    /// Waits until at most `remaining` threads are counted; false after `ms` milliseconds.
    bool wait(unsigned ms, unsigned remaining = 0);
    /// Waits within the time-out and names on standard error the threads that have not ended. A caller that
    /// is itself counted is not waited for.
    void waitAtExit() noexcept;

private:
    unsigned count();

    unsigned m_timeoutMs;
    Names m_survivors;
    Mutex m_mutex;
    Condition m_changed;
    unsigned m_count = 0;
};

} // namespace quillon
