// Where this program lies; one source per system.
#pragma once

#include <filesystem>

namespace devgateway {

/// Absolute path of the running program. Throws std::exception when the system does not tell.
std::filesystem::path executablePath();

} // namespace devgateway
