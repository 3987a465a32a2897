// A directory that lives as long as its object.
#pragma once

#include "base/string.h"
#include "base/stringconversion.h"

#include <string>

namespace quillon::test {

/// Makes an empty directory of a unique name and removes it with all that it holds at the end.
class TemporaryDirectory {
public:
    /// Throws std::runtime_error when it cannot be made.
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(TemporaryDirectory const&) = delete;
    TemporaryDirectory& operator=(TemporaryDirectory const&) = delete;

    /// Absolute, without a "/" at the end.
    std::string const& path() const noexcept { return m_path; }
    String toString() const { return String::copyOf(m_path); }
    /// The path of an entry; makes nothing.
    String file(std::string_view name) const { return String::copyOf(m_path + "/" + std::string(name)); }

private:
    std::string m_path;
};

/// The whole content of a file; empty when it cannot be read.
std::string readFile(String const& path);
/// Writes a file; throws std::runtime_error when it cannot.
void writeFile(String const& path, std::string_view content);
/// Type and permissions; 0 where there is nothing. Follows no link.
unsigned modeOf(String const& path);

} // namespace quillon::test
