// Archives of modules: nothing may appear beside the destination.
#include "base/file.h"
#include "fuzz/fuzzer.h"
#include "zlib/zip.h"

using namespace quillon;

namespace {

/// A directory of this process's own, made once.
String const& room() {
    static String const directory = [] {
        char path[] = "/tmp/tarvik-fuzz-XXXXXX";
        return String(mkdtemp(path)).clone();
    }();
    return directory;
}

} // namespace

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    String const archive = room() + "/archive.zip";
    String const destination = room() + "/inner/destination";
    File::writeAllFile(archive, fuzz::inputOf(data, size));
    zlib::Zip::unzip(archive, destination);
    List<String> beside;
    File::getFilesList(room(), beside);
    fuzz::require(beside.size() == 1);
    if (File::isDirectory(room() + "/inner"))
        File::eraseDirectory(room() + "/inner");
    return 0;
}
