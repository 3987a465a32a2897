// A loaded plug-in module.
#pragma once

#include "base/proxy.h"
#include "tarvikclient/moduleexports.h"

namespace quillon {

/// A plug-in module refuses to make its front end.
class EPluginDllInstance : public Exception {
    using Exception::Exception;
};

/// What a session tells a plug-in before it starts it.
struct PluginParameters {
    String login;
    String organization;
    String hostname; ///< the gateway, with its port if it has one
    String server;
    String suffix;
    String ticket;
    String sessionId;
    String certDirectory;
    String certFileName;
    String caFileName;
    String certPassword;
};

/// Opens a plug-in module, finds its exports and makes its front end; wraps each export. Made and used on the
/// client thread. Every operation throws EModuleLoader when the module lets an exception out.
class PluginDllInstance : public ModuleLoader {
public:
    /// `version` and `pluginDir` are handed to the module. Throws EModuleLoader and EPluginDllInstance.
    PluginDllInstance(std::unique_ptr<VerifiedModule> module, String const& version, String const& pluginDir);

    /// Hands over everything that start() needs.
    void configure(PluginParameters const& parameters, TarvikDownloadDelegate downloadDelegate);
    /// Configures and starts.
    void start(PluginParameters const& parameters, TarvikDownloadDelegate downloadDelegate);
    void start();
    /// Hands over seven fields parted by "|": enabled, type, host, login, password, domain, "save:no".
    /// Nothing is escaped.
    void setProxy(bool enabled, Proxy const& proxy);
    void stop();
    String getLogs();
    /// The pending status lines, a JSON array.
    String getErrors();
    int execute(String const& first, String const& second, String const& third);
    int LaunchSafeResource(int id, String const& text, TarvikDownloadDelegate downloadDelegate);

    /// Copies a text of the module's and hands it back.
    String strResponse(char* text);

private:
    void* m_instance = nullptr;
    TARVIK_EXPORT(m_createPluginFrontal, DllCreatePluginFrontal);
    TARVIK_EXPORT(m_setDllVersion, DllSetDllVersion2);
    TARVIK_EXPORT(m_setPluginDir, DllSetPluginDir2);
    TARVIK_EXPORT(m_setLogin, DllSetLogin2);
    TARVIK_EXPORT(m_setOrganization, DllSetOrganization2);
    TARVIK_EXPORT(m_setHostname, DllSetHostname2);
    TARVIK_EXPORT(m_setServer, DllSetServer2);
    TARVIK_EXPORT(m_setSuffix, DllSetSuffix2);
    TARVIK_EXPORT(m_setTicket, DllSetTicket2);
    TARVIK_EXPORT(m_setSessionId, DllSetSessionId2);
    TARVIK_EXPORT(m_setCertDirectory, DllSetCertDirectory2);
    TARVIK_EXPORT(m_setCertFileName, DllSetCertFileName2);
    TARVIK_EXPORT(m_setCaFileName, DllSetCaFileName2);
    TARVIK_EXPORT(m_setCertPassword, DllSetCertPassword2);
    TARVIK_EXPORT(m_setDownloadDelegate, DllSetDownloadDelegate2);
    TARVIK_EXPORT(m_setProxy, DllSetProxy2);
    TARVIK_EXPORT(m_getLogs, DllGetLogs2);
    TARVIK_EXPORT(m_execute, DllExecute2);
    TARVIK_EXPORT(m_getErrors, DllGetErrors2);
    TARVIK_EXPORT(m_start, DllStart2);
    TARVIK_EXPORT(m_stop, DllStop2);
    TARVIK_EXPORT(m_releaseStr, DllReleaseStr);
    TARVIK_EXPORT(m_launchSafeResource, LaunchSafeResource);
};

} // namespace quillon
