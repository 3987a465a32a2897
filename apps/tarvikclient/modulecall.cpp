#include "tarvikclient/modulecall.h"

#include "base/file.h"
#include "base/visibletext.h"
#include "tarvikclient/keptforsignals.h"

#include <pthread.h>

#include <atomic>

namespace quillon {

namespace {

constexpr unsigned longestName = 128;

constinit std::atomic<char const*> g_module{nullptr};
constinit std::atomic<char const*> g_call{nullptr};
constinit std::atomic<pthread_t> g_caller{};
static_assert(std::atomic<pthread_t>::is_always_lock_free && std::atomic<char const*>::is_always_lock_free);

} // namespace

ModuleCall::ModuleCall(char const* name) noexcept : m_before(g_call) {
    g_caller = pthread_self();
    g_call = name;
}

ModuleCall::~ModuleCall() {
    g_call = m_before;
}

ModuleCall::AtWork ModuleCall::current() noexcept {
    char const* const call = g_call;
    return {g_module, call, call && pthread_equal(g_caller, pthread_self()) != 0};
}

void ModuleCall::setModule(String const& path) {
    String const name = cutText(visibleText(File::getFileName(path)), longestName);
    g_module = name.empty() ? nullptr : keptForSignals(name);
}

} // namespace quillon
