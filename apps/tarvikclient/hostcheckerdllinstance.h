// A loaded host-checker module.
#pragma once

#include "tarvikclient/moduleexports.h"

namespace quillon {

/// A host-checker module cannot be used.
class EHostCheckerDllInstance : public Exception {
    using Exception::Exception;
};

/// Opens a host-checker module and finds its exports; wraps each. Made and used on the client thread. Every
/// operation throws EModuleLoader when the module lets an exception out.
class HostCheckerDllInstance : public ModuleLoader {
public:
    explicit HostCheckerDllInstance(std::unique_ptr<VerifiedModule> module);

    /// `directory` ends in "/" and is the module's to write in.
    void start(String const& directory, String const& hostname, String const& language);
    /// The rules of `rules` that this machine satisfies, in the module's own form.
    String getValidRules(String const& rules);
    void stop();

private:
    TARVIK_EXPORT(m_init, InitHostCheckerDll);
    TARVIK_EXPORT(m_close, CloseHostCheckerDll);
    TARVIK_EXPORT(m_getValidRules, GetValidRules);
};

} // namespace quillon
