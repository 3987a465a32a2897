// A session that a process left in the middle.
#pragma once

#include "base/datetime.h"
#include "base/descriptor.h"
#include "base/strings.h"

#include <optional>
#include <vector>

namespace quillon {

/// How a session ended that did not end in order. Texts are fit to be shown.
struct LeftSession {
    enum class End {
        vanished, ///< nobody knows: killed, _exit(), the machine's power
        exited,   ///< the process was made to exit
        crashed
    };

    End end = End::vanished;
    std::optional<DateTime> begun;
    std::optional<DateTime> ended;
    String module; ///< the file of the one that was loaded; empty without one, and where it is not known
    String call;   ///< its export that was at work; empty when none was
    String log;    ///< the path of the copy of the session's log; empty where there was none to be had

    /// One line in English, for a terminal and the log.
    String describe() const;
};

/// Finds the marks that sessions have left behind. What they say is a file's word: it is bounded, and of the
/// files that they name only the log is looked at. Nothing in here throws or logs before settle(). One
/// thread.
class LeftSessions {
public:
    /// Looks for marks in the data directory, and for the newest of them at its log, before that is cut: at
    /// the last longestLog bytes of it. `logPlaces` are where a log can be.
    LeftSessions(String const& directory, Strings const& logPlaces);
    ~LeftSessions();

    /// In bytes.
    static constexpr std::size_t longestLog = 4u << 20;
    /// Of the copy, in the data directory; each replaces the one before.
    static constexpr char logName[] = "/tarvikclient-last.log";

    /// Saves the log and takes the marks away. What the person is to be told of, if anything; it is in the
    /// log then. To be called once.
    std::optional<LeftSession> settle() noexcept;

private:
    struct Mark;

    void collect();
    void consider(char const* name);
    void readLog(Strings const& logPlaces);
    void saveLog();

    String const m_directory; // without a "/" at the end
    std::vector<Mark> m_marks;
    Mark const* m_told = nullptr; // of those, the newest that is to be told
    String m_log;                 // what of its log is to be kept
};

} // namespace quillon
