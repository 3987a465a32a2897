#include "tarvikclient/plugindllinstaller.h"

#include "base/file.h"
#include "base/log.h"
#include "tarvikclient/client.h"
#include "zlib/zip.h"

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
    if (!force && File::exists(modulePath) && File::exists(sigPath)) {
        log(TRACE, "TarvikClient", "downloadWindowsDll",
            modulePath + " and " + sigPath + " are already present.");
        return;
    }
    // Both before anything is removed: a download that is refused must not cost the module that is there.
    for (String const& name : {dll.pattern, dll.filename})
        if (!staysInDirectory(name, "TarvikClientPluginDll", "downloadDll"))
            return;
    log(TRACE, "TarvikClient", "downloadWindowsDll", "Downloading dll.");
    String const unpackedPath = directory + "/" + dll.pattern;
    String const unpackedSigPath = unpackedPath + SignedDll::fileSuffix;
    for (String const& path : {modulePath, sigPath, unpackedPath, unpackedSigPath})
        REMOVE(path);
    String const archive = m_downloads.downloadFromConfig(dll, directory);
    zlib::Zip::unzip(archive, directory);
    RENAME(unpackedPath, modulePath);
    RENAME(unpackedSigPath, sigPath);
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
    TarvikClient::verifyDllSignature(path, path + SignedDll::fileSuffix);
    m_module = std::make_unique<PluginDllInstance>(path, m_dlls.mac.version, getPluginDir());
}

} // namespace quillon
