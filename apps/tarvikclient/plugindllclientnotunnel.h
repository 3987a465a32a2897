// A session that opens one resource through a plug-in, without a tunnel.
#pragma once

#include "tarvikclient/plugindllinstaller.h"

namespace quillon {

class ITarvikClientNotify;

/// Installs a plug-in module and has it launch the configured resource.
class TarvikClientPluginDllNoTunnel : public PluginDllInstaller {
public:
    TarvikClientPluginDllNoTunnel(ISubClientHost& host, ITarvikClientNotify& notify,
                                  NoTunnelClientPluginDllConfiguration& configuration,
                                  DownloadManager& downloads);

    /// Returns the module's result.
    int run(CurlSession& session) override;

private:
    NoTunnelClientPluginDllConfiguration& m_configuration;
};

} // namespace quillon
