#include "devgateway/workers.h"

namespace devgateway {

void Workers::enqueue(std::function<void()> connection) {
    m_check();
    std::lock_guard const lock(m_mutex);
    m_waiting.push_back(std::move(connection));
    if (m_waiting.size() > m_idle && m_threads.size() < m_most)
        m_threads.emplace_back([this] { work(); });
    m_changed.notify_one();
}

void Workers::shutdown() {
    {
        std::lock_guard const lock(m_mutex);
        m_isEnding = true;
        m_changed.notify_all();
    }
    for (std::thread& thread : m_threads)
        thread.join();
}

void Workers::work() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        ++m_idle;
        m_changed.wait(lock, [this] { return !m_waiting.empty() || m_isEnding; });
        --m_idle;
        if (m_waiting.empty())
            return;
        std::function<void()> connection = std::move(m_waiting.front());
        m_waiting.pop_front();
        lock.unlock();
        connection();
        connection = nullptr;
        lock.lock();
    }
}

} // namespace devgateway
