#include "devgateway/termination.h"

#include <pthread.h>

#include <csignal>
#include <initializer_list>

namespace devgateway {

void holdTerminationSignals() {
    sigset_t held;
    sigemptyset(&held);
    for (int const which : {SIGINT, SIGTERM}) {
        sigaddset(&held, which);
        std::signal(which, SIG_DFL);
    }
    pthread_sigmask(SIG_BLOCK, &held, nullptr);
}

bool isTerminationPending() {
    sigset_t pending;
    sigpending(&pending);
    return sigismember(&pending, SIGINT) == 1 || sigismember(&pending, SIGTERM) == 1;
}

} // namespace devgateway
