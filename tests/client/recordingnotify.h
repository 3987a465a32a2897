// A notification sink that remembers.
#pragma once

#include "curl/requestinfo.h"
#include "tarvikclient/clientnotify.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace quillon::test {

/// Keeps every notification as a line such as "onStatus 2". Called on the client thread, read on any.
class RecordingNotify final : public ITarvikClientNotify {
public:
    /// Called with each line, on the client thread, once it is kept. Set while no session runs.
    std::function<void(std::string const&)> onLine;

    void onConnectError(RequestInfo const& information) override {
        add("onConnectError " + toStd(information.format()));
    }
    void onFatalError(String const& text) override { add("onFatalError " + toStd(text)); }
    void onStatus(ClientStatus const& status) override { add("onStatus " + std::to_string(status)); }
    void onVpnStatus(String const& status) override { add("onVpnStatus " + toStd(status)); }
    void onDispatch(ClientType type) override { add("onDispatch " + std::to_string(type)); }

    std::vector<std::string> lines() const {
        std::lock_guard lock(m_mutex);
        return m_lines;
    }

    /// Waits until `line` has been notified `times` times; false after ten seconds.
    bool await(std::string const& line, int times = 1) const {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(10),
                                  [&] { return std::count(m_lines.begin(), m_lines.end(), line) >= times; });
    }

private:
    static std::string toStd(String const& text) { return std::string(text.view()); }

    void add(std::string const& line) {
        {
            std::lock_guard lock(m_mutex);
            m_lines.push_back(line);
            m_changed.notify_all();
        }
        if (onLine)
            onLine(line);
    }

    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    std::vector<std::string> m_lines;
};

} // namespace quillon::test
