// A pipe by which a process wakes itself.
#pragma once

#include "base/descriptor.h"

namespace quillon {

/// A pipe whose two ends are this process's: signal handlers and threads write to it, and one thread waits at
/// it, or has its event loop do so. Both ends are closed on exec.
class SelfPipe {
public:
    /// Throws std::system_error without a pipe.
    SelfPipe();

    /// Readable as long as there are wake-ups that have not been taken.
    int readEnd() const noexcept { return m_read.number(); }
    /// Any thread; safe in a signal handler, and leaves errno alone. Never waits: in a pipe that is full
    /// there are wake-ups enough.
    void wake() noexcept;
    /// Takes all wake-ups; false when there is none. One thread.
    bool take() noexcept;
    /// Waits for a wake-up and takes one. One thread. Throws std::system_error.
    void await();

private:
    Descriptor m_read;
    Descriptor m_write;
};

} // namespace quillon
