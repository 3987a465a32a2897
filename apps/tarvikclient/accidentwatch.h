// Ends of the process in the middle of a session.
#pragma once

#include "base/string.h"

#include <memory>

namespace quillon {

/// From now on a crash of the process (SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT) writes one line into the log
/// with the module and the export that were at work, and leaves it in the session's mark; then whatever
/// handled the signal before does, the system's own crash reporting in most cases, as if nothing had been in
/// between. exit() in the middle of a session writes a line and leaves a mark too. A module's own handlers
/// come before these. `log` is the file for the lines, or anything that is none: then they go to standard
/// error. The client thread, at the begin of each session.
void watchForAccidents(String const& log) noexcept;

/// Where the calling thread's signal handlers run while the object lives, so that they can when its stack is
/// full. Does nothing where the thread has such a place.
class SignalStack {
public:
    SignalStack() noexcept;
    ~SignalStack();
    SignalStack(SignalStack const&) = delete;
    SignalStack& operator=(SignalStack const&) = delete;

private:
    std::unique_ptr<char[]> m_memory;
};

} // namespace quillon
