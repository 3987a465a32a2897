#include "devgateway/executablepath.h"

#include <mach-o/dyld.h>

#include <cstdint>
#include <stdexcept>
#include <string>

namespace devgateway {

std::filesystem::path executablePath() {
    std::uint32_t size = 0;
    _NSGetExecutablePath(nullptr, &size); // only tells the size, terminator included
    std::string path(size, '\0');
    if (_NSGetExecutablePath(path.data(), &size) != 0)
        throw std::runtime_error("cannot find the path of the program");
    return std::filesystem::canonical(path.c_str());
}

} // namespace devgateway
