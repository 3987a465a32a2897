#include "devgateway/modulepackage.h"

#include "devgateway/text.h"
#include "devgateway/ziparchive.h"

#include <filesystem>
#include <stdexcept>

namespace devgateway {

namespace {

/// Changes one character in the middle of the Base64 text of the element "signature", to another one that is
/// Base64 too: what is tried is the check of the signature, not the reading of its file.
std::string spoiled(std::string signatureFile, std::string const& path) {
    constexpr std::string_view startTag = "<signature>";
    auto const start = signatureFile.find(startTag);
    auto const end = signatureFile.find("</signature>");
    if (start == std::string::npos || end == std::string::npos || end <= start + startTag.size())
        throw std::runtime_error(path + " holds no signature to spoil");
    auto const first = start + startTag.size();
    char& character = signatureFile[first + (end - first) / 2];
    character = character == 'A' ? 'B' : 'A';
    return signatureFile;
}

} // namespace

ModulePackage packModule(std::string const& path, bool spoilSignature) {
    std::string const signaturePath = path + ".sig";
    if (!std::filesystem::is_regular_file(path))
        throw std::runtime_error("no module " + path + " (build it, or name another one)");
    if (!std::filesystem::is_regular_file(signaturePath))
        throw std::runtime_error("no signature " + signaturePath + " (make it with tarvik-signmodule sign)");

    std::string signature = readFile(signaturePath);
    if (spoilSignature)
        signature = spoiled(std::move(signature), signaturePath);
    ModulePackage package;
    package.pattern = std::filesystem::path(path).filename().string();
    package.archive = zipArchive({{package.pattern, readFile(path)}, {package.pattern + ".sig", signature}});
    package.md5 = md5Hex(package.archive);
    return package;
}

} // namespace devgateway
