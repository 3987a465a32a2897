// What wakes the program's main thread: signals, and news from the client thread.
#pragma once

namespace quillon::cli {

/// Why the main thread was woken.
enum class Wakeup : char { stop = 's', restart = 'r', news = 'n' };

/// A pipe into which signal handlers and the client thread write one byte for each reason, and which the main
/// thread reads. One object per process, made before the client.
class Wakeups {
public:
    /// Takes over SIGINT and SIGTERM (stop) and SIGHUP (restart). Throws std::system_error without a pipe.
    Wakeups();
    ~Wakeups();
    Wakeups(Wakeups const&) = delete;
    Wakeups& operator=(Wakeups const&) = delete;

    /// Any thread; safe in a signal handler.
    void post(Wakeup reason) noexcept;
    /// Waits for the next reason. The main thread.
    Wakeup wait();

private:
    int m_ends[2];
};

} // namespace quillon::cli
