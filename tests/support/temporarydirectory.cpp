#include "support/temporarydirectory.h"

#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace quillon::test {

TemporaryDirectory::TemporaryDirectory()
    : m_path(std::filesystem::canonical(std::filesystem::temp_directory_path()) / "tarvik-test-XXXXXX") {
    if (!mkdtemp(m_path.data()))
        throw std::runtime_error("temporary directory: " + m_path);
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string readFile(String const& path) {
    std::ifstream file(std::string(path.view()), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void writeFile(String const& path, std::string_view content) {
    std::ofstream file(std::string(path.view()), std::ios::binary);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!file.flush())
        throw std::runtime_error("cannot write " + std::string(path.view()));
}

unsigned modeOf(String const& path) {
    struct stat info {};
    return lstat(path.str(), &info) == 0 ? info.st_mode : 0;
}

} // namespace quillon::test
