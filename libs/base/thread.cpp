#include "base/thread.h"

#include "base/console.h"
#include "base/stringconversion.h"
#include "base/threadmanager.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <limits>
#include <thread>

namespace quillon {

namespace {

constexpr unsigned drainBeforeAbortMs = 1000;

char const* startFailure(int error) {
    switch (error) {
    case EAGAIN:
        return "Not enough system resources to create the thread";
    case EINVAL:
        return "Invalid argument for attr";
    case EPERM:
        return "The caller does not have appropriate permission";
    case ENOMEM:
        return "Not enough memory to allocate a thread stack";
    default:
        return nullptr;
    }
}

/// As conditions take it: a longer time is their longest, seven weeks.
unsigned bounded(unsigned long ms) {
    return static_cast<unsigned>(std::min<unsigned long>(ms, std::numeric_limits<unsigned>::max()));
}

/// Whether `isMet` came true within `ms` milliseconds, which may be no limit at all.
template <class Predicate>
bool waitUntil(Condition& condition, Predicate isMet, unsigned long ms, IMutex& mutex) {
    if (ms != Thread::noLimit)
        return condition.waitUntil(isMet, bounded(ms), mutex);
    while (!isMet())
        condition.wait(mutex);
    return true;
}

[[noreturn]] void abortForStartFailure(int error) {
    char const* const known = startFailure(error);
    log(ERROR, "Thread", "run", known ? String(known) : "thread not launched: " + toString(error));
    log(ERROR, "Thread", "run", std::strerror(error));
    if (Console* const target = Console::instance().get())
        target->drain(drainBeforeAbortMs);
    std::abort();
}

} // namespace

Thread::Thread(String const& name, Priority priority, bool synchronised)
    : m_name(name.owned()),
      m_synchronised(synchronised),
      m_private(std::make_unique<ThreadPrivate>(*this, priority)) {}

Thread::~Thread() = default;

bool Thread::run(bool noWait) {
    ThreadPrivate& self = *m_private;
    threadManager(); // stands for the initial thread, which must be the one that comes here first
    TSynchronize<Mutex> lock(self.m_mutex);
    if (self.m_running)
        return false;
    self.reap();
    // From here on the thread counts as started: a second run() before it has announced itself starts
    // nothing.
    self.m_running = true;
    self.m_finished = false;
    unsigned const before = self.m_announcements;
    if (int const error = pthread_create(&self.m_native, &self.m_attributes, &ThreadPrivate::entry, this))
        abortForStartFailure(error);
    self.m_handle = self.m_native;
    self.m_hasHandle = self.m_unreaped = true;
    // A short thread may have finished by the time this one wakes: its announcement counts all the same.
    while (!noWait && self.m_announcements == before)
        self.m_started.wait(self.m_mutex);
    return true;
}

bool Thread::join(unsigned long timeoutMs) {
    if (isMyThread())
        return false;
    ThreadPrivate& self = *m_private;
    TSynchronize<Mutex> lock(self.m_mutex);
    auto const hasEnded = [&] { return !self.m_running || self.m_finished; };
    if (!waitUntil(self.m_ended, hasEnded, timeoutMs, self.m_mutex))
        return false;
    self.reap();
    return true;
}

bool Thread::isRunning() const {
    TSynchronize<Mutex> lock(m_private->m_mutex);
    return m_private->m_running;
}

bool Thread::isMyThread() const {
    TSynchronize<Mutex> lock(m_private->m_mutex);
    return m_private->m_hasHandle && pthread_equal(m_private->m_handle, pthread_self());
}

String Thread::getName() const {
    TSynchronize<Mutex> lock(m_nameMutex);
    return m_name;
}

void Thread::setName(String const& name) {
    TSynchronize<Mutex> lock(m_nameMutex);
    m_name = name.owned();
}

void Thread::setStackSize(unsigned bytes) {
    TSynchronize<Mutex> lock(m_private->m_mutex);
    pthread_attr_setstacksize(&m_private->m_attributes, bytes);
}

bool Thread::sleep(unsigned long ms, IMutex& mutex) {
    if (ms != noLimit)
        return m_private->m_woken.wait(bounded(ms), mutex);
    m_private->m_woken.wait(mutex);
    return true;
}

bool Thread::wait(unsigned long ms, IMutex& mutex) {
    unsigned const before = m_private->m_wakeUps.load();
    auto const isWoken = [&] { return m_private->m_wakeUps.load() != before; };
    return waitUntil(m_private->m_woken, isWoken, ms, mutex);
}

void Thread::wakeUp() {
    ++m_private->m_wakeUps;
    m_private->m_woken.broadcast();
}

void Thread::setLocalData(String const& key, ThreadLocalData* data) {
    std::unique_ptr<ThreadLocalData> old(data);
    TSynchronize<Mutex> lock(m_private->m_mutex);
    m_private->m_localData[key.owned()].swap(old);
}

ThreadLocalData* Thread::getLocalData(String const& key) const {
    TSynchronize<Mutex> lock(m_private->m_mutex);
    auto const found = m_private->m_localData.find(key);
    return found == m_private->m_localData.end() ? nullptr : found->second.get();
}

void Thread::removeLocalData(String const& key) {
    TSynchronize<Mutex> lock(m_private->m_mutex);
    m_private->m_localData.erase(key);
}

Thread* Thread::getCurrentThread() {
    return threadManager().getCurrentThread();
}

pthread_t Thread::getMyId() {
    return pthread_self();
}

String Thread::getMyIdString() {
    String const name = ThreadPrivateBase::myName();
    // A number or a pointer, as the platform has it. NOLINTNEXTLINE(performance-no-int-to-ptr)
    return name.empty() ? toString((void const*)pthread_self()) : name;
}

unsigned Thread::getNbCpus() {
    return std::thread::hardware_concurrency();
}

bool Thread::waitAllThread(unsigned ms) {
    return ThreadPrivateBase::ms_synchro().wait(ms, ThreadPrivateBase::myName().empty() ? 0 : 1);
}

void MainThread::main() {
    log(ERROR, "MainThread", "main", "NEVER CALL ME");
}

} // namespace quillon
