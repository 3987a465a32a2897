// Feeds a fuzz target every file of a directory, its corpus, in builds without libFuzzer.
#include "fuzz/fuzzer.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

void replay(std::filesystem::path const& path) {
    std::fprintf(stderr, "%s\n", path.c_str()); // the last one named is the one that broke the target
    std::ifstream file(path, std::ios::binary);
    std::vector<char> const input{std::istreambuf_iterator<char>(file), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(input.data()), input.size());
}

} // namespace

int main(int argc, char** argv) {
    int inputs = 0;
    for (int i = 1; i < argc; ++i)
        for (auto const& entry : std::filesystem::directory_iterator(argv[i])) {
            replay(entry.path());
            ++inputs;
        }
    return inputs == 0; // a corpus that is not found is a failure
}
