// A session that checks this machine.
#pragma once

#include "tarvikclient/clientconfiguration.h"
#include "tarvikclient/clientnotify.h"
#include "tarvikclient/hostcheckerdllinstance.h"
#include "tarvikclient/stopsignal.h"
#include "tarvikclient/subclient.h"
#include "tarvikclient/subclienthost.h"

#include <memory>

namespace quillon {

/// The gateway's answer to one round of checks.
struct ResponseHostcheckerResult : IConf {
    using IConf::write;
    void write(IKeyReader& reader) override;

    bool goOn = false; ///< "continue"
    String info;
};

/// Installs the host-checker module and posts what it finds until the gateway has seen enough. Everything but
/// stop() and showLogs() is for the client thread; the references outlive the sub-client.
class TarvikClientHostchecker : public ISubClient {
public:
    TarvikClientHostchecker(ISubClientHost& host, ITarvikClientNotify& notify,
                            ClientHostcheckerDllConfiguration& configuration, DownloadManager& downloads);

    int run(CurlSession& session) override;
    void stop() override { m_stopSignal.stop(); }
    void showLogs() override {}

    /// The directory of host-checker modules, without a "/" behind.
    String getHostcheckerDir() const;
    /// Each version has a directory of its own. The null string, logged, for a name that would lead
    /// elsewhere.
    String getDllPath(Dll const& dll, String const& directory) const;
    void downloadDll();
    /// Verifies the installed module and loads it. Throws EBadSignature and EModuleLoader.
    void loadDll();
    /// Posts the checked rules; whether the gateway wants another round. A failure is logged and is a no.
    bool sendResponse(CurlSession& session, String const& rules);

private:
    bool readAnswer(Memory const& body);

    ISubClientHost& m_host;
    ITarvikClientNotify& m_notify;
    ClientHostcheckerDllConfiguration& m_configuration;
    DownloadManager& m_downloads;
    std::unique_ptr<HostCheckerDllInstance> m_module;
    StopSignal m_stopSignal;
};

} // namespace quillon
