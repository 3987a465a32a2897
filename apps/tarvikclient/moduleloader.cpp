#include "tarvikclient/moduleloader.h"

#include "base/failure.h"
#include "tarvikclient/modulecall.h"

#include <dlfcn.h>

#include <utility>

namespace quillon {

ModuleLoader::ModuleLoader(std::unique_ptr<VerifiedModule> module) : m_module(std::move(module)) {
    String const loadPath = m_module->getLoadPath();
    ModuleCall::setModule(m_module->getPath());
    bool const loaded = dlopen(loadPath.str());
    String const reason = loaded ? String() : dlerror().replace(loadPath, m_module->getPath());
    m_module->settle();
    if (loaded)
        return;
    ModuleCall::setModule(String());
    reportLoadError(m_module->getPath(), reason);
}

ModuleLoader::ModuleLoader(String const& path) {
    if (!dlopen(path.str()))
        reportLoadError(path);
}

ModuleLoader::~ModuleLoader() {
    if (!m_handle)
        return;
    dlclose();
    ModuleCall::setModule(String());
}

void* ModuleLoader::load(char const* symbol) {
    void* const address = dlsym(symbol);
    if (!address)
        reportLoadError(symbol);
    return address;
}

bool ModuleLoader::dlopen(char const* path) {
    ModuleCall const call("dlopen"); // which runs the module's constructors
    m_handle = ::dlopen(path, RTLD_LAZY);
    return m_handle != nullptr;
}

void* ModuleLoader::dlsym(char const* symbol) {
    return ::dlsym(m_handle, symbol);
}

String ModuleLoader::dlerror() {
    char const* const text = ::dlerror();
    return text ? String(text).clone() : String();
}

int ModuleLoader::dlclose() {
    ModuleCall const call("dlclose");
    return ::dlclose(std::exchange(m_handle, nullptr));
}

void ModuleLoader::reportLoadError(String const& name) {
    reportLoadError(name, dlerror());
}

void ModuleLoader::reportLoadError(String const& name, String const& reason) {
    fail<EModuleLoader>("ModuleLoader", "ModuleLoader", "Unable to load \"" + name + "\": " + reason,
                        {"apps/tarvikclient/moduleloader.cpp", 28});
}

void ModuleLoader::reportException(char const* symbol) {
    fail<EModuleLoader>("ModuleLoader", "call", String("An exception left the module's ") + symbol);
}

} // namespace quillon
