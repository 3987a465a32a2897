// The trace of a session that is running.
#pragma once

#include "base/string.h"

namespace quillon {

/// A small file, "session-….mark" in the data directory, that is there while a session runs and gone when it
/// has ended in order: what a process that went in the middle of one leaves behind. It is locked (flock) as
/// long as its process lives, which tells it from one that was left. Its lines:
///
///     running 1732256388                        or "ending": the end is in order, whatever becomes of it
///     log /tmp/tarvikclient.log                 where the session's log is
///     crashed 1732256400 DllStart2 plugin.so    or "exited"; "-" for what is not known
///
/// A mark that cannot be written is logged and keeps no session from running.
class SessionMark {
public:
    SessionMark() = default;
    ~SessionMark() { end(); }
    SessionMark(SessionMark const&) = delete;
    SessionMark& operator=(SessionMark const&) = delete;

    /// A session of this process runs, which writes to `log`. The client thread.
    void begin(String const& directory, String const& log) noexcept;
    /// It has ended. The client thread.
    void end() noexcept;

    /// The end of the session that runs, or of the process, is wanted: it is no accident whatever happens
    /// now, except for a crash. Any thread; safe in a signal handler.
    static void expectEnd() noexcept;
    /// Whether a session runs whose end nobody wants. Any thread; safe in a signal handler.
    static bool isEndUnexpected() noexcept;

    enum class Accident { crash, exit };
    /// Adds to the mark what the process ends of, and what was at work; makes a mark where there is none any
    /// more. Safe in a signal handler.
    static void add(Accident accident) noexcept;

private:
    bool make(String const& base, String const& text);

    String m_path; // empty without a mark
};

} // namespace quillon
