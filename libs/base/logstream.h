// Where log lines go.
#pragma once

#include "base/deadline.h"
#include "base/string.h"

#include <cstdio>
#include <memory>

namespace quillon {

/// An open stream that lines are appended to without ever waiting for its reader beyond a bound: a pipe that
/// nobody empties must not hold up the process. Lines bypass the stream's buffer. One thread at a time.
class LogStream {
public:
    /// Closes `file` at the end, unless it is a standard stream.
    explicit LogStream(FILE* file);
    ~LogStream();
    LogStream(LogStream const&) = delete;
    LogStream& operator=(LogStream const&) = delete;

    /// Opens an empty file for a log. The name may stand in a directory that everybody writes to, so what is
    /// there already is taken for the log only when it is a plain file of this user's own with no other name:
    /// no link is followed, no pipe waited for, nothing foreign cut or written. The file gets mode 0600. Null
    /// when it is refused, with the reason in `reason`.
    static std::shared_ptr<LogStream> open(String const& path, String& reason);

    FILE* file() const noexcept { return m_file; }

    /// Appends to the end of the file, whoever else has appended. What the disk refuses is lost, and so is
    /// what a pipe or terminal does not take within a second; from then on lines are lost at once until it
    /// takes some again.
    void write(std::string_view line);

private:
    bool awaitRoom(Deadline const& deadline);

    FILE* m_file;
    int m_descriptor;
    bool m_stuck = false;
};

} // namespace quillon
