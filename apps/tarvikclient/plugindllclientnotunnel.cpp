#include "tarvikclient/plugindllclientnotunnel.h"

namespace quillon {

TarvikClientPluginDllNoTunnel::TarvikClientPluginDllNoTunnel(
    ISubClientHost& host, ITarvikClientNotify&, NoTunnelClientPluginDllConfiguration& configuration,
    DownloadManager& downloads)
    : PluginDllInstaller(host, configuration.pluginDlls, downloads), m_configuration(configuration) {}

int TarvikClientPluginDllNoTunnel::run(CurlSession& session) {
    downloadMacOsXDll();
    if (session.isCancelled())
        return 0;
    loadDll();
    return m_module->LaunchSafeResource(m_configuration.safetype, m_configuration.service,
                                        &DownloadManager::StaticDownloadWrapper::downloadFileTo);
}

} // namespace quillon
