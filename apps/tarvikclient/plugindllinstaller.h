// Installs and loads plug-in modules; what both kinds of plug-in session share.
#pragma once

#include "tarvikclient/clientconfiguration.h"
#include "tarvikclient/plugindllinstance.h"
#include "tarvikclient/stopsignal.h"
#include "tarvikclient/subclient.h"
#include "tarvikclient/subclienthost.h"

#include <memory>

namespace quillon {

/// Base of the plug-in sub-clients: where a module lives, how it is fetched, verified and loaded. Everything
/// but stop() and showLogs() is for the client thread. The references outlive the sub-client.
class PluginDllInstaller : public ISubClient {
public:
    void stop() override { m_stopSignal.stop(); }
    void showLogs() override {}

    /// The directory of plug-in modules, without a "/" behind.
    String getPluginDir() const;
    String getDllPath(Dll const& dll, String const& directory) const;
    String getDllSigPath(Dll const& dll, String const& directory) const;

    /// Puts the module and its signature file into `directory`; with `force`, even where both are there. A
    /// file that cannot be removed, and one that the archive lacks, is an EFile. A name that would leave the
    /// directory is logged and nothing is touched.
    void downloadDll(Dll const& dll, String const& directory, bool force);
    /// Installs the module for this platform.
    void downloadMacOsXDll();
    /// Installs the modules for Windows; not called on other platforms.
    void downloadWindowsDlls();
    /// Verifies the installed module and loads it. Throws EBadSignature, EModuleLoader and
    /// EPluginDllInstance.
    void loadDll();

protected:
    PluginDllInstaller(ISubClientHost& host, Dlls const& dlls, DownloadManager& downloads)
        : m_host(host), m_dlls(dlls), m_downloads(downloads) {}

    ISubClientHost& m_host;
    Dlls const& m_dlls;
    DownloadManager& m_downloads;
    std::unique_ptr<PluginDllInstance> m_module;
    StopSignal m_stopSignal;
};

} // namespace quillon
