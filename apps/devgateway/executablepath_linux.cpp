#include "devgateway/executablepath.h"

namespace devgateway {

std::filesystem::path executablePath() {
    return std::filesystem::read_symlink("/proc/self/exe");
}

} // namespace devgateway
