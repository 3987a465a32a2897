// The log's lines as text, for tests that assert on them.
#pragma once

#include "support/temporarydirectory.h"

#include <vector>

namespace quillon::test {

/// Sends all four categories of the console to a temporary file, and to standard output again at the end. One
/// at a time in a process: the console is shared.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(LogCapture const&) = delete;
    LogCapture& operator=(LogCapture const&) = delete;

    /// All that was logged before the call, as it stands in the file. Any thread.
    std::string text() const;
    /// The same by line, without line ends.
    std::vector<std::string> lines() const;
    bool contains(std::string_view part) const { return text().find(part) != std::string::npos; }
    /// How often `part` stands in the text.
    std::size_t count(std::string_view part) const;

private:
    TemporaryDirectory m_directory;
    String m_file;
};

} // namespace quillon::test
