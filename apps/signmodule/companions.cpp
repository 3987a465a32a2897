#include "signmodule/companions.h"

#include "base/failure.h"
#include "base/file.h"
#include "tarvikclient/signeddll.h"

#include <filesystem>

namespace quillon::signmodule {

namespace {

namespace fs = std::filesystem;

fs::path toPath(String const& text) {
    return fs::path(text.view());
}

/// The path without links but for its last component; empty when the directory is not there.
fs::path resolved(String const& file) {
    std::error_code error;
    fs::path const path = fs::absolute(toPath(file), error);
    fs::path const directory = fs::canonical(path.parent_path(), error);
    return error ? fs::path() : directory / path.filename();
}

[[noreturn]] void refuse(String const& file, char const* reason) {
    fail<EFile>("Companions", "describeCompanion", file + reason);
}

} // namespace

ModuleCompanion describeCompanion(String const& module, String const& file) {
    fs::path const path = resolved(file);
    fs::path const name = path.lexically_relative(resolved(module).parent_path());
    if (name.empty() || *name.begin() == "..")
        refuse(file, " does not lie below the module's directory");
    std::error_code error;
    if (!fs::is_regular_file(fs::symlink_status(path, error)))
        refuse(file, " is no plain file");
    ModuleCompanion companion;
    companion.name = String::copyOf(name.generic_string());
    companion.sha256 = SignedDll::hashFile(file);
    return companion;
}

bool verifyCompanion(String const& module, ModuleCompanion const& companion) {
    fs::path const file = resolved(module).parent_path() / toPath(companion.name);
    ModuleCompanion const found = describeCompanion(module, String::copyOf(file.native()));
    return found.name == companion.name && found.sha256 == companion.sha256;
}

} // namespace quillon::signmodule
