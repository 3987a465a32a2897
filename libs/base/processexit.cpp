#include "base/processexit.h"

#include "base/console.h"
#include "base/thread.h"

namespace quillon {

namespace {

constexpr unsigned drainAtExitMs = 2000;

struct AtExit {
    ~AtExit() {
        ThreadPrivateBase::ms_synchro().waitAtExit();
        if (Console* const target = Console::instance().get()) {
            target->drain(drainAtExitMs);
            target->quit_and_join();
        }
    }
};

} // namespace

void arrangeProcessExit() {
    static AtExit atExit;
}

} // namespace quillon
