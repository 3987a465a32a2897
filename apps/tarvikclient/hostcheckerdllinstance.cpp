#include "tarvikclient/hostcheckerdllinstance.h"

#include "base/failure.h"

namespace quillon {

HostCheckerDllInstance::HostCheckerDllInstance(std::unique_ptr<VerifiedModule> module)
    : ModuleLoader(std::move(module)) {}

void HostCheckerDllInstance::start(String const& directory, String const& hostname, String const& language) {
    m_init("", "", directory.str(), hostname.str(), language.str());
}

String HostCheckerDllInstance::getValidRules(String const& rules) {
    // The text stays the module's: it is copied here and not handed back.
    char const* const text = m_getValidRules(rules.str());
    if (!text)
        fail<EHostCheckerDllInstance>("HostCheckerDllInstance", "getValidRules",
                                      "The module returned no text");
    return String(text).clone();
}

void HostCheckerDllInstance::stop() {
    m_close();
}

} // namespace quillon
