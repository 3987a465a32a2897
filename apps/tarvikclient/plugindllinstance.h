// A loaded plug-in module.
#pragma once

#include "base/proxy.h"
#include "tarvikclient/moduleexports.h"
#include "tarvikclient/moduleloader.h"

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
    void resolveExports();

    void* m_instance = nullptr;
    TARVIK_EXPORT_TYPE(DllCreatePluginFrontal) * m_createPluginFrontal;
    TARVIK_EXPORT_TYPE(DllSetDllVersion2) * m_setDllVersion;
    TARVIK_EXPORT_TYPE(DllSetPluginDir2) * m_setPluginDir;
    TARVIK_EXPORT_TYPE(DllSetLogin2) * m_setLogin;
    TARVIK_EXPORT_TYPE(DllSetOrganization2) * m_setOrganization;
    TARVIK_EXPORT_TYPE(DllSetHostname2) * m_setHostname;
    TARVIK_EXPORT_TYPE(DllSetServer2) * m_setServer;
    TARVIK_EXPORT_TYPE(DllSetSuffix2) * m_setSuffix;
    TARVIK_EXPORT_TYPE(DllSetTicket2) * m_setTicket;
    TARVIK_EXPORT_TYPE(DllSetSessionId2) * m_setSessionId;
    TARVIK_EXPORT_TYPE(DllSetCertDirectory2) * m_setCertDirectory;
    TARVIK_EXPORT_TYPE(DllSetCertFileName2) * m_setCertFileName;
    TARVIK_EXPORT_TYPE(DllSetCaFileName2) * m_setCaFileName;
    TARVIK_EXPORT_TYPE(DllSetCertPassword2) * m_setCertPassword;
    TARVIK_EXPORT_TYPE(DllSetDownloadDelegate2) * m_setDownloadDelegate;
    TARVIK_EXPORT_TYPE(DllSetProxy2) * m_setProxy;
    TARVIK_EXPORT_TYPE(DllGetLogs2) * m_getLogs;
    TARVIK_EXPORT_TYPE(DllExecute2) * m_execute;
    TARVIK_EXPORT_TYPE(DllGetErrors2) * m_getErrors;
    TARVIK_EXPORT_TYPE(DllStart2) * m_start;
    TARVIK_EXPORT_TYPE(DllStop2) * m_stop;
    TARVIK_EXPORT_TYPE(DllReleaseStr) * m_releaseStr;
    TARVIK_EXPORT_TYPE(LaunchSafeResource) * m_launchSafeResource;
};

} // namespace quillon
