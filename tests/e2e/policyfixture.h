// The policy of the programs that are built for these tests.
#pragma once

#include "support/temporarydirectory.h"

#include <filesystem>

namespace quillon::test {

/// The one file that they read. Gone again at the end; whoever uses it runs alone.
class ProgramPolicy {
public:
    ProgramPolicy() {
        namespace fs = std::filesystem;
        fs::create_directories(fs::path(file).parent_path());
        fs::permissions(fs::path(file).parent_path(), fs::perms::owner_all);
        fs::remove(file);
    }
    ~ProgramPolicy() { std::filesystem::remove(file); }

    /// Writes what stands in <policy>.
    void write(std::string const& rules) {
        writeFile(file, "<policy>" + rules + "</policy>");
        std::filesystem::permissions(file, std::filesystem::perms::owner_read);
    }
    void remove() { std::filesystem::remove(file); }

    static constexpr char const* file = TEST_POLICY;
};

} // namespace quillon::test
