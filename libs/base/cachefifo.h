// A queue of many producers and one consumer whose records are recycled.
#pragma once

#include "base/condition.h"

#include <array>
#include <atomic>

namespace quillon {

/// What a record of a CacheFifoNoBlockPush derives from.
template <class T>
struct FifoLink {
    std::atomic<T*> nextInFifo{nullptr};
};

/// First in, first out, for any number of pushing threads and one popping thread. Pushing is one atomic
/// exchange; only when the consumer sleeps does it take a short lock to wake it. Freed records are kept in a
/// few slots for the next producer. Records still queued are deleted with the queue.
template <class T>
class CacheFifoNoBlockPush {
public:
    using Factory = T* (*)();

    explicit CacheFifoNoBlockPush(Factory create)
        : m_create(create), m_newest(create()), m_oldest(m_newest) {}

    ~CacheFifoNoBlockPush() {
        for (T* record = m_oldest; record;) {
            T* const next = record->nextInFifo.load(std::memory_order_relaxed);
            delete record;
            record = next;
        }
        for (auto& slot : m_free)
            delete slot.load(std::memory_order_relaxed);
    }
    CacheFifoNoBlockPush(CacheFifoNoBlockPush const&) = delete;
    CacheFifoNoBlockPush& operator=(CacheFifoNoBlockPush const&) = delete;

    /// A record to fill and push(); the caller owns it until then. Any thread.
    T* take() {
        for (auto& slot : m_free)
            if (slot.load(std::memory_order_relaxed))
                if (T* const record = slot.exchange(nullptr, std::memory_order_acquire))
                    return record;
        return m_create();
    }

    /// Queues `record`; the queue owns it from now on. Any thread.
    void push(T* record) {
        record->nextInFifo.store(nullptr, std::memory_order_relaxed);
        T* const previous = m_newest.exchange(record, std::memory_order_acq_rel);
        // The order with the sleeper's flag decides who sees whom: both sides write first and read then.
        previous->nextInFifo.store(record, std::memory_order_seq_cst);
        if (m_sleeping.load(std::memory_order_seq_cst)) {
            TSynchronize<Mutex> lock(m_mutex);
            m_pushed.signal();
        }
    }

    /// Moves the content of the oldest record, awaited for at most `ms` milliseconds, into `record`, which is
    /// the caller's own; false on time-out. The consumer's thread only.
    bool pop(T& record, unsigned ms) {
        if (tryPop(record))
            return true;
        TSynchronize<Mutex> lock(m_mutex);
        m_sleeping.store(true, std::memory_order_seq_cst);
        bool popped = tryPop(record);
        if (!popped) {
            m_pushed.wait(ms, m_mutex);
            popped = tryPop(record);
        }
        m_sleeping.store(false, std::memory_order_relaxed);
        return popped;
    }

private:
    bool tryPop(T& record) {
        // The oldest link is a record that has been emptied; its successor is the first that is full.
        T* const next = m_oldest->nextInFifo.load(std::memory_order_seq_cst);
        if (!next)
            return false;
        record.takeFrom(*next);
        release(m_oldest);
        m_oldest = next;
        return true;
    }

    void release(T* record) {
        for (auto& slot : m_free)
            if (!slot.load(std::memory_order_relaxed)) {
                delete slot.exchange(record, std::memory_order_acq_rel);
                return;
            }
        delete record;
    }

    Factory m_create;
    std::atomic<T*> m_newest; // the end at which producers push
    T* m_oldest;              // the consumer's end
    std::atomic<bool> m_sleeping{false};
    Mutex m_mutex;
    Condition m_pushed;
    std::array<std::atomic<T*>, 64> m_free{};
};

} // namespace quillon
