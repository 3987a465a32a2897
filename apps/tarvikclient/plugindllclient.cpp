#include "tarvikclient/plugindllclient.h"

#include "base/failure.h"
#include "base/file.h"
#include "base/stringconversion.h"
#include "json/JSONWrapper.h"
#include "tarvikclient/moduleinstall.h"

namespace quillon {

namespace {

constexpr unsigned pollMs = 500;
constexpr unsigned closeAfterMs = 3000;

enum StatusCode { statusLine = TARVIK_CODE_STATUS, closeRequest = TARVIK_CODE_CLOSE_REQUEST };

} // namespace

TarvikClientPluginDll::TarvikClientPluginDll(ISubClientHost& host, ITarvikClientNotify& notify,
                                             ClientPluginDllConfiguration& configuration,
                                             DownloadManager& downloads)
    : PluginDllInstaller(host, configuration.pluginDlls, downloads),
      m_notify(notify),
      m_configuration(configuration) {}

int TarvikClientPluginDll::run(CurlSession& session) {
    m_notify.onStatus(STATUS_DOWNLOADING_COMPENENTS);
    downloadMacOsXDll();
    downloadCerts();
    if (session.isCancelled())
        return 0;
    loadDll();
    bool const proxySent = sendProxy();
    m_module->start(parameters(), &DownloadManager::StaticDownloadWrapper::downloadFileTo);
    if (proxySent)
        sendProxy();
    poll();
    m_module->stop();
    return 0;
}

String TarvikClientPluginDll::getCertDir() const {
    if (!staysInDirectory(m_configuration.orgname, "TarvikClientPluginDll", "getCertDir"))
        return String::null;
    return getPluginDir() + "/" + certificatesName + "/" + m_configuration.orgname;
}

void TarvikClientPluginDll::downloadCerts() {
    String const directory = getCertDir();
    if (directory.empty())
        return;
    fetchCertificate(m_downloads, m_configuration.certificates.cert, getPluginDir(), directory);
    fetchCertificate(m_downloads, m_configuration.certificates.ca, getPluginDir(), directory);
}

bool TarvikClientPluginDll::sendProxy() {
    Proxy proxy;
    proxy.getCredentials() = m_host.getProxyCredentials();
    try {
        m_module->setProxy(true, proxy);
        return true;
    } catch (NullException const&) {
        return false;
    }
}

PluginParameters TarvikClientPluginDll::parameters() const {
    PluginParameters parameters;
    parameters.login = m_configuration.login;
    parameters.organization = m_configuration.orgname;
    parameters.hostname = m_host.getMediation();
    parameters.server = m_configuration.server;
    parameters.suffix = m_configuration.clientid;
    parameters.ticket = m_configuration.ticket;
    parameters.sessionId = m_configuration.sessionid;
    parameters.certDirectory = getCertDir();
    parameters.certFileName = m_configuration.certificates.cert.filename;
    parameters.caFileName = m_configuration.certificates.ca.filename;
    parameters.certPassword = m_configuration.certPassword;
    return parameters;
}

void TarvikClientPluginDll::poll() {
    do
        processPluginStatus(m_module->getErrors());
    while (!m_stopSignal.isStopped() && !m_stopSignal.wait(pollMs));
}

void TarvikClientPluginDll::processPluginStatus(String const& text) {
    bool statusInBatch = false;
    bool closeRequestInBatch = false;
    json::JSONWrapperFromString const batch(text);
    if (batch.getType() != json::JSON::arrayValue)
        fail<json::EJsonError>("TarvikClientPluginDll", "processPluginStatus",
                               "the module's status is no list");
    for (json::JSONWrapper const element : batch) {
        switch (toInt32(element["code"].asString())) {
        case statusLine:
            m_notify.onVpnStatus(element["status"].asString());
            m_vpnStatusSeen = statusInBatch = true;
            break;
        case closeRequest:
            closeRequestInBatch = true;
            onCloseRequest(toUint32(element["reason"].asString()));
            break;
        default:
            break;
        }
    }
    if (!closeRequestInBatch && m_closeRequestCount != 0) {
        m_closeRequestCount = 0;
        log(TRACE, "TarvikClientPluginDll", "processPluginStatus", "closeRequest canceled");
    }
    if (!statusInBatch && m_vpnStatusSeen)
        m_notify.onVpnStatus(String::null);
}

void TarvikClientPluginDll::onCloseRequest(std::uint32_t reason) {
    if (reason == 1 || reason == 2 || reason == 4 || ++m_closeRequestCount * pollMs >= closeAfterMs)
        stop();
}

} // namespace quillon
