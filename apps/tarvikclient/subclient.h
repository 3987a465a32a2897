// The work of one session.
#pragma once

namespace quillon {

class CurlSession;

/// Does what one kind of configuration asks for. Made on the client thread and run there once.
class ISubClient {
public:
    /// Carries out the whole sub-session and returns when it is over: a module's own result, or 0. Loads no
    /// module once `session` is cancelled. Throws what ends the session as a failure.
    virtual int run(CurlSession& session) = 0;
    /// Asks run() to return soon, also when it has not begun. Any thread.
    virtual void stop() = 0;
    /// Shows the module's logs, where there is something to show. Any thread.
    virtual void showLogs() = 0;
    virtual ~ISubClient() = default;
};

} // namespace quillon
