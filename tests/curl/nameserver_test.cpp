// A name server that does not answer. Linux, where a program's function comes before the C library's also for
// libcurl.
#include "transfer.h"

#include <dlfcn.h>
#include <netdb.h>

#include <cstring>
#include <latch>

namespace {

std::latch g_asked(1);
std::latch g_answered(1);
std::latch g_gone(1);

} // namespace

/// Looking up "held.example" takes until g_answered is released, once.
extern "C" int getaddrinfo(char const* node, char const* service, addrinfo const* hints, addrinfo** result) {
    if (node && std::strcmp(node, "held.example") == 0) {
        g_asked.count_down();
        g_answered.wait();
        g_gone.count_down();
        return EAI_NONAME;
    }
    static auto* const next = reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return next(node, service, hints, result);
}

namespace quillon::test {

TEST(Cancel, does_not_wait_for_the_name_server) {
    TrustingSession session;
    Transfer transfer(session, "http://held.example/");
    g_asked.wait();
    transfer.expectCutOff();
    g_answered.count_down();
    g_gone.wait();
}

} // namespace quillon::test
