// Follows a text file that others append to.
#pragma once

#include "base/descriptor.h"

#include <sys/types.h>
#include <wx/string.h>

#include <string>

namespace quillon {

/// Gives the end of a log as it grows, of a file of the process's user with one name and of no other: what a
/// link leads to and what another user has put in its place is not there. A file that is missing, appears
/// later, is cut or is replaced is taken from a new beginning; a file that was cut and has grown past its old
/// end between two polls is taken for one that has only grown. One thread at a time.
class LogTail {
public:
    /// In bytes. How far before its end a file is begun, at a line's begin where there is one.
    static constexpr std::size_t longestBacklog = 1 << 20;
    /// In bytes. The most that one poll reads.
    static constexpr std::size_t longestPiece = longestBacklog + 1;

    struct News {
        bool restarted = false; ///< what was given before is no longer what stands before the text
        wxString text;          ///< without NUL; what is no UTF-8 is shown as replacement characters
    };

    /// `path` in the file system's encoding. Nothing is opened yet.
    explicit LogTail(std::string path);

    /// What is new since the last call; the begin of it when that is much, and the rest with the next calls.
    /// Never waits: a file that cannot be read gives nothing.
    News poll();

private:
    bool beginAnew();
    bool isCurrent() const;
    bool open();
    void begin();
    std::string readPiece();
    void skipToLine(std::string& piece);

    std::string m_path;
    Descriptor m_file; // held open, so that no other file can have its number
    off_t m_position = 0;
    bool m_inLine = false;    // the first piece begins within a line
    std::string m_incomplete; // the bytes of a character that has not come whole
};

} // namespace quillon
