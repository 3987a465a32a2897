// Opens a shared library and finds its exports.
#pragma once

#include "base/exception.h"
#include "tarvikclient/verifiedmodule.h"

#include <memory>

namespace quillon {

/// A module cannot be opened, lacks an export, or broke the rules of its boundary.
class EModuleLoader : public Exception {
    using Exception::Exception;
};

/// One open module. The library stays mapped while the object lives; whoever owns it stops the module before.
/// Used on the client thread.
class ModuleLoader {
public:
    /// Opens the library; throws EModuleLoader after a log line with the module's path and the linker's own
    /// text.
    explicit ModuleLoader(std::unique_ptr<VerifiedModule> module);
    /// Opens a library of this machine's own: the linker reads its path as it likes.
    explicit ModuleLoader(String const& path);
    ModuleLoader(ModuleLoader const&) = delete;
    ModuleLoader& operator=(ModuleLoader const&) = delete;
    virtual ~ModuleLoader();

    /// The address of an export; throws EModuleLoader, after a log line, when it is missing.
    void* load(char const* symbol);

    bool dlopen(char const* path);
    void* dlsym(char const* symbol);
    String dlerror();
    int dlclose();

    /// Throws the EModuleLoader of a module that let an exception out of the export, after its log line.
    [[noreturn]] static void reportException(char const* symbol);

private:
    [[noreturn]] void reportLoadError(String const& name);
    [[noreturn]] void reportLoadError(String const& name, String const& reason);

    std::unique_ptr<VerifiedModule> m_module; // what the library loads itself goes by its directory
    void* m_handle = nullptr;
};

} // namespace quillon
