#include "tarvikclient/plugindllinstance.h"

#include "base/failure.h"

namespace quillon {

PluginDllInstance::PluginDllInstance(std::unique_ptr<VerifiedModule> module, String const& version,
                                     String const& pluginDir)
    : ModuleLoader(std::move(module)) {
    m_instance = m_createPluginFrontal();
    if (!m_instance)
        fail<EPluginDllInstance>("PluginDllInstance", "PluginDllInstance", "Unable to create dll instance !",
                                 {"apps/tarvikclient/plugindllinstance.cpp", 41});
    m_setDllVersion(m_instance, version.str());
    m_setPluginDir(m_instance, pluginDir.str());
}

void PluginDllInstance::configure(PluginParameters const& parameters,
                                  TarvikDownloadDelegate downloadDelegate) {
    m_setLogin(m_instance, parameters.login.str());
    m_setOrganization(m_instance, parameters.organization.str());
    m_setHostname(m_instance, parameters.hostname.str());
    m_setServer(m_instance, parameters.server.str());
    m_setSuffix(m_instance, parameters.suffix.str());
    m_setTicket(m_instance, parameters.ticket.str());
    m_setSessionId(m_instance, parameters.sessionId.str());
    m_setCertDirectory(m_instance, parameters.certDirectory.str());
    m_setCertFileName(m_instance, parameters.certFileName.str());
    m_setCaFileName(m_instance, parameters.caFileName.str());
    m_setCertPassword(m_instance, parameters.certPassword.str());
    m_setDownloadDelegate(m_instance, downloadDelegate);
}

void PluginDllInstance::start(PluginParameters const& parameters, TarvikDownloadDelegate downloadDelegate) {
    configure(parameters, downloadDelegate);
    start();
}

void PluginDllInstance::start() {
    m_start(m_instance);
}

void PluginDllInstance::setProxy(bool enabled, Proxy const& proxy) {
    Credentials const& credentials = proxy.getCredentials();
    String const text =
        String("|").glue({enabled ? "1" : "0", proxy.getTypeString(), proxy.getHost(), credentials.getLogin(),
                          credentials.getPassword(), credentials.getDomain(), "save:no"});
    m_setProxy(m_instance, text.str());
}

void PluginDllInstance::stop() {
    m_stop(m_instance);
}

String PluginDllInstance::getLogs() {
    return strResponse(m_getLogs(m_instance));
}

String PluginDllInstance::getErrors() {
    return strResponse(m_getErrors(m_instance));
}

int PluginDllInstance::execute(String const& first, String const& second, String const& third) {
    return m_execute(m_instance, first.str(), second.str(), third.str());
}

int PluginDllInstance::LaunchSafeResource(int id, String const& text,
                                          TarvikDownloadDelegate downloadDelegate) {
    m_setDownloadDelegate(m_instance, downloadDelegate);
    return m_launchSafeResource(m_instance, id, text.str());
}

String PluginDllInstance::strResponse(char* text) {
    if (!text)
        return String();
    String copy = String(text).clone();
    m_releaseStr(text);
    return copy;
}

} // namespace quillon
