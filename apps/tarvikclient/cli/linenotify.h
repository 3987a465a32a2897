// Notifications as lines on standard output.
#pragma once

#include "tarvikclient/cli/wakeups.h"
#include "tarvikclient/clientnotify.h"

#include <atomic>

namespace quillon::cli {

/// How a session ended, as the program's exit code.
enum class Outcome : int { running = -1, finished = 0, fatalError = 1, connectError = 2 };

/// Prints one line for each notification, flushed at once, and wakes the main thread. Called on the client
/// thread; outcome() on any.
class LineNotify final : public ITarvikClientNotify {
public:
    /// `wakeups` must outlive the client's thread.
    explicit LineNotify(Wakeups& wakeups) : m_wakeups(wakeups) {}

    void onConnectError(RequestInfo const& information) override;
    void onFatalError(String const& text) override;
    void onStatus(ClientStatus const& status) override;
    void onVpnStatus(String const& status) override;
    void onDispatch(ClientType type) override;

    /// `running` until the session has ended.
    Outcome outcome() const noexcept { return m_outcome; }

private:
    void print(char const* notification, String const& text);
    void end(Outcome outcome);

    Wakeups& m_wakeups;
    std::atomic<Outcome> m_outcome{Outcome::running};
};

} // namespace quillon::cli
