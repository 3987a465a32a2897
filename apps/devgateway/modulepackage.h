// A module as the gateway serves it.
#pragma once

#include <string>

namespace devgateway {

/// The archive of one module and what a configuration says about it. Constant once made.
struct ModulePackage {
    std::string pattern; // the module's name in the archive; its signature is pattern + ".sig"
    std::string archive; // the ZIP archive's bytes
    std::string md5;     // of the archive, lower-case hexadecimal
};

/// Packs the module and the signature file beside it (path + ".sig"). With spoilSignature one character of
/// the signature is wrong. Throws std::runtime_error that says which file is missing and what to do about it.
ModulePackage packModule(std::string const& path, bool spoilSignature);

} // namespace devgateway
