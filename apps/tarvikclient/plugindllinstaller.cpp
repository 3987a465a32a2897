#include "tarvikclient/plugindllinstaller.h"

#include "base/failure.h"
#include "base/file.h"
#include "tarvikclient/moduleinstall.h"

namespace quillon {

String PluginDllInstaller::getPluginDir() const {
    return File::getUserApplicationDataDirectory() + "/" + "Plugin";
}

String PluginDllInstaller::getDllPath(Dll const&, String const& directory) const {
    return directory + "/" + "plugindll.so";
}

String PluginDllInstaller::getDllSigPath(Dll const& dll, String const& directory) const {
    return getDllPath(dll, directory) + SignedDll::fileSuffix;
}

void PluginDllInstaller::downloadDll(Dll const& dll, String const& directory, bool force) {
    String const modulePath = getDllPath(dll, directory);
    String const sigPath = getDllSigPath(dll, directory);
    ModuleInstall install({ModuleManifest::plugin, directory, dll.pattern, modulePath}, m_host.policy());
    if (!force && File::exists(modulePath) && File::exists(sigPath) && !install.isOutdated()) {
        log(TRACE, "TarvikClient", "downloadWindowsDll",
            modulePath + " and " + sigPath + " are already present.");
        return;
    }
    // Before anything is removed: a download that is refused must not cost the module that is there.
    for (String const& name : {dll.pattern, dll.filename})
        if (!staysInDirectory(name, "TarvikClientPluginDll", "downloadDll"))
            return;
    log(TRACE, "TarvikClient", "downloadWindowsDll", "Downloading dll.");
    install.fetch(m_downloads, dll);
    if (auto const missing = install.missing())
        fail<EFile>("TarvikClient", "downloadWindowsDll",
                    "missing " + directory + "/" + *missing + " in archive");
    install.commit();
}

void PluginDllInstaller::downloadMacOsXDll() {
    downloadDll(m_dlls.mac, getPluginDir(), false);
}

void PluginDllInstaller::downloadWindowsDlls() {
    downloadDll(m_dlls.win32, getPluginDir(), false);
    downloadDll(m_dlls.win64, getPluginDir() + "/" + "x64", false);
}

void PluginDllInstaller::loadDll() {
    String const path = getDllPath(m_dlls.mac, getPluginDir());
    log(TRACE, "TarvikClient", "loadDll", "Load macosx module");
    auto module = m_host.verifyModule(path, ModuleManifest::plugin);
    try {
        m_module = std::make_unique<PluginDllInstance>(std::move(module), m_dlls.mac.version, getPluginDir());
    } catch (Exception const&) {
        // The publisher's, but no plug-in: the next session is to fetch another one.
        REMOVE(path + SignedDll::fileSuffix);
        throw;
    }
}

} // namespace quillon
