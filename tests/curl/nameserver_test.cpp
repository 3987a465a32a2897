// A name server that does not answer. Linux, where a program's function comes before the C library's also for
// libcurl.
#include "transfer.h"

#include <dlfcn.h>
#include <netdb.h>

#include <atomic>
#include <cstring>

namespace {

std::atomic<bool> g_asked{false};
std::atomic<bool> g_answered{false};
std::atomic<bool> g_gone{false};

} // namespace

/// Looking up "held.example" takes until g_answered is set.
extern "C" int getaddrinfo(char const* node, char const* service, addrinfo const* hints, addrinfo** result) {
    if (node && std::strcmp(node, "held.example") == 0) {
        g_asked = true;
        g_asked.notify_all();
        g_answered.wait(false);
        g_gone = true;
        g_gone.notify_all();
        return EAI_NONAME;
    }
    static auto* const next = reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return next(node, service, hints, result);
}

namespace quillon::test {

TEST(Cancel, does_not_wait_for_the_name_server) {
    TrustingSession session;
    Transfer transfer(session, "http://held.example/");
    g_asked.wait(false);
    transfer.expectCutOff();
    g_answered = true;
    g_answered.notify_all();
    g_gone.wait(false);
}

} // namespace quillon::test
