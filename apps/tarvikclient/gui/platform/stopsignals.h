// Signals that ask the program to end.
#pragma once

#include "base/selfpipe.h"

#include <wx/evtloop.h>
#include <wx/evtloopsrc.h>

#include <csignal>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>

namespace quillon {

/// Takes SIGTERM, SIGINT and SIGHUP to the interface's thread, SIGHUP unless the program was told to ignore
/// it. Each is taken once: coming again it ends the process, also one that hangs. One object per process, on
/// the interface's thread, while the toolkit's event loop exists.
class StopSignals final : public wxEventLoopSourceHandler {
public:
    /// `onStop` must throw nothing. Without a pipe, which is logged, signals keep doing what they did.
    explicit StopSignals(std::function<void()> onStop);
    /// Signals do again what they did before.
    ~StopSignals() override;
    StopSignals(StopSignals const&) = delete;
    StopSignals& operator=(StopSignals const&) = delete;

    void OnReadWaiting() override;
    void OnWriteWaiting() override {}
    void OnExceptionWaiting() override {}

private:
    static constexpr int signals[] = {SIGTERM, SIGINT, SIGHUP};

    void take();

    std::function<void()> m_onStop;
    std::optional<SelfPipe> m_pipe;
    std::unique_ptr<wxEventLoopSource> m_source;
    struct sigaction m_before[std::size(signals)]{};
};

} // namespace quillon
