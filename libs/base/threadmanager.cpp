#include "base/threadmanager.h"

#include "base/console.h"

#include <cstdio>

namespace quillon {

ThreadManager& threadManager() {
    static ThreadManager& manager = *[] {
        auto* const made = new ThreadManager;
        made->init();
        return made;
    }();
    return manager;
}

void ThreadManager::init() {
    m_mainThread = new MainThread;
    m_hasKey = pthread_key_create(&m_currentThreadKey, nullptr) == 0;
    if (m_hasKey)
        pthread_setspecific(m_currentThreadKey, m_mainThread);
    else
        log(ERROR, "ThreadManager", "init", "Unable to create the currentThreadKey");
}

void ThreadManager::uninit() {
    if (m_hasKey)
        pthread_key_delete(m_currentThreadKey);
    m_hasKey = false;
    delete m_mainThread;
    m_mainThread = nullptr;
}

void ThreadManager::registerCurrentThread(Thread* thread) {
    if (m_hasKey)
        pthread_setspecific(m_currentThreadKey, thread);
    TSynchronize<CriticalSection> lock(m_lock);
    m_threads.set(pthread_self(), thread);
}

void ThreadManager::removeCurrentThread(Thread* thread) {
    if (m_hasKey)
        pthread_setspecific(m_currentThreadKey, nullptr);
    TSynchronize<CriticalSection> lock(m_lock);
    auto const found = m_threads.find(pthread_self());
    if (found == m_threads.end() || found->value != thread) {
        std::fprintf(stderr, "ThreadManager::removeCurrentThread(): unable to retrieve thread %lld\n",
                     static_cast<long long>((unsigned long)pthread_self()));
        return;
    }
    m_threads.remove(pthread_self());
}

Thread* ThreadManager::getCurrentThread() const {
    return m_hasKey ? static_cast<Thread*>(pthread_getspecific(m_currentThreadKey)) : nullptr;
}

std::vector<Thread*> ThreadManager::getRunningThreads() const {
    TSynchronize<CriticalSection> lock(m_lock);
    std::vector<Thread*> threads;
    for (auto const& item : m_threads)
        threads.push_back(item.value);
    return threads;
}

void ThreadManager::killAllThreads() {
    TSynchronize<CriticalSection> lock(m_lock);
    Console const* const log = Console::instance().get();
    for (auto const& item : m_threads)
        if (!pthread_equal(item.key, pthread_self()) && !(log && log->isTask(*item.value)))
            pthread_cancel(item.key);
}

} // namespace quillon
