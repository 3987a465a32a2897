#include "zlib/zip.h"

#include "base/file.h"
#include "base/log.h"
#include "zlib/extraction.h"

namespace quillon::zlib {

bool Zip::unzip(String const& archive, String const& destination) {
    return Extraction(archive, destination, Limits()).run();
}

String Zip::DecompressPackage(String const& archive) {
    String const path = archive.replace('\\', '/');
    unsigned const slash = path.rfind('/');
    String const directory = slash == String::npos ? String(".") : path.range(0, slash);
    String const name = path.rright('/').rleft('.');
    unzip(path, directory.empty() ? String("/") : directory);
    String result = directory + "/" + name;
    if (File::exists(result))
        return result;
    log(TRACE, "Zip", "DecompressPackage", "cannot find " + result);
    return String::null;
}

} // namespace quillon::zlib
