// What wakes the program's main thread: signals, and news from the client thread.
#pragma once

#include "base/selfpipe.h"

#include <atomic>

namespace quillon::cli {

/// Why the main thread was woken.
enum class Wakeup { stop, hangUp, news };

/// Signal handlers and the client thread post reasons, and the main thread waits for them. One object per
/// process, made before the client and never destroyed: a handler may be at work on any thread while the
/// process ends.
class Wakeups {
public:
    /// Takes over SIGINT and SIGTERM (stop) and SIGHUP (hangUp). Throws std::system_error without a pipe.
    Wakeups();
    ~Wakeups() = delete;
    Wakeups(Wakeups const&) = delete;
    Wakeups& operator=(Wakeups const&) = delete;

    /// Any thread; safe in a signal handler. No order is lost, however much news there is.
    void post(Wakeup reason) noexcept;
    /// Waits for the next reason, orders first. The main thread.
    Wakeup wait();

private:
    SelfPipe m_pipe;
    // Apart from the pipe, which may be full.
    std::atomic<bool> m_stop{false};
    std::atomic<bool> m_hangUp{false};
};

} // namespace quillon::cli
