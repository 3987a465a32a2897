#include "tarvikclient/plugindllinstance.h"

#include "base/log.h"

namespace quillon {

PluginDllInstance::PluginDllInstance(std::unique_ptr<VerifiedModule> module, String const& version,
                                     String const& pluginDir)
    : ModuleLoader(std::move(module)) {
    resolveExports();
    m_instance = call("DllCreatePluginFrontal", m_createPluginFrontal);
    if (!m_instance) {
        log(ERROR, "PluginDllInstance", "PluginDllInstance", "Unable to create dll instance !");
        throw EPluginDllInstance("EPluginDllInstance", "apps/tarvikclient/plugindllinstance.cpp", 41);
    }
    call("DllSetDllVersion2", m_setDllVersion, m_instance, version.str());
    call("DllSetPluginDir2", m_setPluginDir, m_instance, pluginDir.str());
}

void PluginDllInstance::resolveExports() {
    resolve(m_createPluginFrontal, "DllCreatePluginFrontal");
    resolve(m_setDllVersion, "DllSetDllVersion2");
    resolve(m_setPluginDir, "DllSetPluginDir2");
    resolve(m_setLogin, "DllSetLogin2");
    resolve(m_setOrganization, "DllSetOrganization2");
    resolve(m_setHostname, "DllSetHostname2");
    resolve(m_setServer, "DllSetServer2");
    resolve(m_setSuffix, "DllSetSuffix2");
    resolve(m_setTicket, "DllSetTicket2");
    resolve(m_setSessionId, "DllSetSessionId2");
    resolve(m_setCertDirectory, "DllSetCertDirectory2");
    resolve(m_setCertFileName, "DllSetCertFileName2");
    resolve(m_setCaFileName, "DllSetCaFileName2");
    resolve(m_setCertPassword, "DllSetCertPassword2");
    resolve(m_setDownloadDelegate, "DllSetDownloadDelegate2");
    resolve(m_setProxy, "DllSetProxy2");
    resolve(m_getLogs, "DllGetLogs2");
    resolve(m_execute, "DllExecute2");
    resolve(m_getErrors, "DllGetErrors2");
    resolve(m_start, "DllStart2");
    resolve(m_stop, "DllStop2");
    resolve(m_releaseStr, "DllReleaseStr");
    resolve(m_launchSafeResource, "LaunchSafeResource");
}

void PluginDllInstance::configure(PluginParameters const& parameters,
                                  TarvikDownloadDelegate downloadDelegate) {
    call("DllSetLogin2", m_setLogin, m_instance, parameters.login.str());
    call("DllSetOrganization2", m_setOrganization, m_instance, parameters.organization.str());
    call("DllSetHostname2", m_setHostname, m_instance, parameters.hostname.str());
    call("DllSetServer2", m_setServer, m_instance, parameters.server.str());
    call("DllSetSuffix2", m_setSuffix, m_instance, parameters.suffix.str());
    call("DllSetTicket2", m_setTicket, m_instance, parameters.ticket.str());
    call("DllSetSessionId2", m_setSessionId, m_instance, parameters.sessionId.str());
    call("DllSetCertDirectory2", m_setCertDirectory, m_instance, parameters.certDirectory.str());
    call("DllSetCertFileName2", m_setCertFileName, m_instance, parameters.certFileName.str());
    call("DllSetCaFileName2", m_setCaFileName, m_instance, parameters.caFileName.str());
    call("DllSetCertPassword2", m_setCertPassword, m_instance, parameters.certPassword.str());
    call("DllSetDownloadDelegate2", m_setDownloadDelegate, m_instance, downloadDelegate);
}

void PluginDllInstance::start(PluginParameters const& parameters, TarvikDownloadDelegate downloadDelegate) {
    configure(parameters, downloadDelegate);
    start();
}

void PluginDllInstance::start() {
    call("DllStart2", m_start, m_instance);
}

void PluginDllInstance::setProxy(bool enabled, Proxy const& proxy) {
    Credentials const& credentials = proxy.getCredentials();
    String const text =
        String("|").glue({enabled ? "1" : "0", proxy.getTypeString(), proxy.getHost(), credentials.getLogin(),
                          credentials.getPassword(), credentials.getDomain(), "save:no"});
    call("DllSetProxy2", m_setProxy, m_instance, text.str());
}

void PluginDllInstance::stop() {
    call("DllStop2", m_stop, m_instance);
}

String PluginDllInstance::getLogs() {
    return strResponse(call("DllGetLogs2", m_getLogs, m_instance));
}

String PluginDllInstance::getErrors() {
    return strResponse(call("DllGetErrors2", m_getErrors, m_instance));
}

int PluginDllInstance::execute(String const& first, String const& second, String const& third) {
    return call("DllExecute2", m_execute, m_instance, first.str(), second.str(), third.str());
}

int PluginDllInstance::LaunchSafeResource(int id, String const& text,
                                          TarvikDownloadDelegate downloadDelegate) {
    call("DllSetDownloadDelegate2", m_setDownloadDelegate, m_instance, downloadDelegate);
    return call("LaunchSafeResource", m_launchSafeResource, m_instance, id, text.str());
}

String PluginDllInstance::strResponse(char* text) {
    if (!text)
        return String();
    String const copy = String(text).clone();
    call("DllReleaseStr", m_releaseStr, text);
    return copy;
}

} // namespace quillon
