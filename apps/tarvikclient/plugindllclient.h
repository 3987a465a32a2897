// A session with a tunnel.
#pragma once

#include "tarvikclient/clientnotify.h"
#include "tarvikclient/plugindllinstaller.h"

#include <cstdint>

namespace quillon {

/// Installs and starts a plug-in module and passes its status lines on until it is stopped or asks to close.
class TarvikClientPluginDll : public PluginDllInstaller {
public:
    TarvikClientPluginDll(ISubClientHost& host, ITarvikClientNotify& notify,
                          ClientPluginDllConfiguration& configuration, DownloadManager& downloads);

    int run(CurlSession& session) override;

    /// Where the organisation's certificates go; the null string for a name that would lead elsewhere.
    String getCertDir() const;
    /// Fetches the certificates. One that cannot be fetched does not end the session: the module reports what
    /// it misses.
    void downloadCerts();
    /// Takes one batch of the module's status lines: passes statuses on and counts requests to close. Throws
    /// what the JSON reader throws.
    void processPluginStatus(String const& text);

private:
    bool sendProxy();
    PluginParameters parameters() const;
    void poll();
    void onCloseRequest(std::uint32_t reason);

    ITarvikClientNotify& m_notify;
    ClientPluginDllConfiguration& m_configuration;
    std::uint32_t m_closeRequestCount = 0;
    bool m_vpnStatusSeen = false;
};

} // namespace quillon
