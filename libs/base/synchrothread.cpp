#include "base/synchrothread.h"

#include "base/threadprivate.h"

#include <cstdio>

namespace quillon {

void SynchroThread::increment() {
    TSynchronize<Mutex> lock(m_mutex);
    ++m_count;
}

void SynchroThread::decrement() {
    TSynchronize<Mutex> lock(m_mutex);
    --m_count;
    m_changed.broadcast();
}

unsigned SynchroThread::count() {
    TSynchronize<Mutex> lock(m_mutex);
    return m_count;
}

bool SynchroThread::wait(unsigned ms, unsigned remaining) {
    TSynchronize<Mutex> lock(m_mutex);
    return m_changed.waitUntil([&] { return m_count <= remaining; }, ms, m_mutex);
}

void SynchroThread::waitAtExit() noexcept {
    try {
        if (wait(m_timeoutMs, ThreadPrivateBase::myName().empty() ? 0 : 1))
            return;
        std::fprintf(stderr,
                     "SynchroThread::~SynchroThread\tcannot wait for all threads termination for: %ds\n",
                     static_cast<int>(m_timeoutMs / 1000));
        std::fprintf(stderr, "got %d remaining threads\nSurvivors:\n", static_cast<int>(count()));
        for (String const& name : m_survivors())
            std::fprintf(stderr, " * %s\n", name.str());
    } catch (...) {
        std::fputs("execption caught during SynchroThread::~SynchroThread()\n", stderr);
    }
}

} // namespace quillon
