// The threads that serve connections.
#pragma once

#include <httplib.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace devgateway {

/// Gives each open connection a thread of its own, up to a bound, so that clients that say nothing keep
/// nobody waiting; threads are kept for later connections. The server's listening thread passes here on every
/// new connection and whenever there is none, which is the moment for `check`.
class Workers : public httplib::TaskQueue {
public:
    Workers(size_t most, std::function<void()> check) : m_most(most), m_check(std::move(check)) {}

    void enqueue(std::function<void()> connection) override;
    void on_idle() override { m_check(); }
    /// Waits for all connections.
    void shutdown() override;

private:
    void work();

    size_t const m_most;
    std::function<void()> const m_check;
    std::vector<std::thread> m_threads; // the listening thread's
    std::mutex m_mutex;
    std::condition_variable m_changed;
    // Guarded by m_mutex.
    std::deque<std::function<void()>> m_waiting;
    size_t m_idle = 0;
    bool m_isEnding = false;
};

} // namespace devgateway
