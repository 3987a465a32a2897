#include "tarvikclient/client.h"

#include "base/console.h"
#include "base/failure.h"
#include "base/file.h"
#include "tarvikclient/hostcheckerclient.h"
#include "tarvikclient/logplace.h"
#include "tarvikclient/plugindllclient.h"
#include "tarvikclient/plugindllclientnotunnel.h"
#include "tarvikclient/verifiedmodule.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

namespace quillon {

namespace {

constexpr char dataDirectoryName[] = "/.Tarvik/"; // within the home directory

void enterDataDirectory(String const& directory) {
    File::ensureDirectory(directory);
    log(TRACE, "TarvikClient", "main", "Tarvik directory is : " + directory);
    // Modules and settings are open to all by their own mode: the directory keeps others out. A fallback to
    // the current directory leaves that as it is.
    bool const own = directory.ends(dataDirectoryName);
    if ((own && chmod(directory.str(), S_IRWXU) != 0) || chdir(directory.str()) != 0)
        fail<ETarvikClient>("TarvikClient", "TarvikClient", "Cannot use directory " + directory);
}

/// Sub-clients of sessions that ended on an error. Their modules were started and not stopped, so unloading
/// them would pull the code from under their threads: they are kept until the process ends.
void keepForEver(std::unique_ptr<ISubClient> subClient) {
    static auto& mutex = *new Mutex;
    static auto& abandoned = *new std::vector<std::unique_ptr<ISubClient>>;
    TSynchronize<Mutex> lock(mutex);
    abandoned.push_back(std::move(subClient));
}

} // namespace

TarvikClient::TarvikClient(ITarvikClientNotify& notify, IGatewayConsent* consent,
                           SessionAudit::Sink const& audit)
    : Thread("tarvikclient", PRIORITY_NORMAL, true),
      m_audit(audit),
      m_consent(consent),
      m_downloadManager(m_localConfiguration),
      m_notify(notify) {
    String const directory = File::getUserApplicationDataDirectory();
    LeftSessions leftSessions(directory, {logPath, logInDataDirectory(directory)}); // before the log is cut
    String const refusal = logTo(logPath);
    if (!refusal.empty())
        logToDataDirectory(directory, logPath, refusal);
    enterDataDirectory(directory);
    m_leftSession = leftSessions.settle();
    m_systemProxy.load(directory);
    m_downloadManager.getSession().setProxySource(&m_systemProxy);
    readSettings();
}

void TarvikClient::readSettings() {
    String const settings = getLocalConfPath();
    struct stat info {};
    if (stat(settings.str(), &info) != 0 ||
        !S_ISREG(info.st_mode)) // one that is there but closed is not missing
        return;
    log(TRACE, "TarvikClient", "TarvikClient", "Loading local configuration from " + settings);
    try {
        m_localConfiguration.readFromFile(settings);
    } catch (Exception const& e) {
        traceCaught(e);
    }
}

TarvikClient::~TarvikClient() {
    abandonSubClient();
}

bool TarvikClient::run(String const& url) {
    {
        TSynchronize<Mutex> lock(m_mutex);
        m_url = url.owned();
    }
    return start();
}

void TarvikClient::restart() {
    stop();
    start();
}

bool TarvikClient::start() {
    TSynchronize<Mutex> lock(m_startMutex);
    if (isRunning())
        return false;
    // Only where a thread will start, so that a cancelled session is not revived; and before it does, so that
    // whatever is cancelled from now on is the new session.
    m_downloadManager.getSession().resume();
    {
        TSynchronize<Mutex> failureLock(m_mutex);
        m_failure = {};
        m_connectError = {};
    }
    return Thread::run(false);
}

void TarvikClient::stop() {
    TSynchronize<Mutex> lock(m_mutex);
    stopWork();
}

/// Under the mutex.
void TarvikClient::stopWork() {
    if (m_question)
        m_question->answer(GatewayQuestion::Answer::withdrawn);
    if (!m_subClient)
        return;
    SessionMark::expectEnd();
    m_subClient->stop();
}

void TarvikClient::cancel() {
    TSynchronize<Mutex> lock(m_mutex);
    SessionMark::expectEnd();
    m_downloadManager.getSession().cancel();
    stopWork();
}

void TarvikClient::showLogs() {
    TSynchronize<Mutex> lock(m_mutex);
    if (m_subClient)
        m_subClient->showLogs();
}

String TarvikClient::getMediation() const {
    TSynchronize<Mutex> lock(m_mutex);
    return m_mediation;
}

SessionFailure TarvikClient::getFailure() const {
    TSynchronize<Mutex> lock(m_mutex);
    return m_failure;
}

RequestInfo TarvikClient::getConnectError() const {
    TSynchronize<Mutex> lock(m_mutex);
    return m_connectError;
}

bool TarvikClient::allowsCertificateExceptions() const {
    return m_downloadManager.getSession().allowsCertificateExceptions();
}

String TarvikClient::getLocalConfPath() const {
    return File::getUserApplicationDataDirectory() + "/" + "tarvikclient.xml";
}

void TarvikClient::saveLocalConfiguration() {
    m_localConfiguration.save(getLocalConfPath());
    m_systemProxy.save();
}

void TarvikClient::verifyDllSignature(String const& modulePath, String const& sigPath) {
    VerifiedModule(modulePath, sigPath, Policy());
}

std::unique_ptr<VerifiedModule> TarvikClient::verifyModule(String const& path, char const* kind) {
    m_isModuleMissing = !File::exists(path);
    auto module = std::make_unique<VerifiedModule>(path, path + SignedDll::fileSuffix, *m_policy, kind);
    m_failing.kind = FailureKind::moduleNotLoadable;
    m_audit.setModule(module->getRecord().name, module->getRecord().sha256);
    return module;
}

template <class SubClient, class Configuration>
void TarvikClient::setSubClient(ClientType type, Configuration& configuration) {
    m_notify.onDispatch(type);
    auto subClient = std::make_unique<SubClient>(*this, m_notify, configuration, m_downloadManager);
    abandonSubClient();
    TSynchronize<Mutex> lock(m_mutex);
    m_subClient = std::move(subClient);
}

std::unique_ptr<ISubClient> TarvikClient::takeSubClient() {
    TSynchronize<Mutex> lock(m_mutex);
    return std::move(m_subClient);
}

void TarvikClient::abandonSubClient() {
    if (auto subClient = takeSubClient())
        keepForEver(std::move(subClient));
}

void TarvikClient::dispatch(ClientHostcheckerDllConfiguration& configuration) {
    setSubClient<TarvikClientHostchecker>(CLIENT_TYPE_HOSTCHECKER, configuration);
}

void TarvikClient::dispatch(ClientPluginDllConfiguration& configuration) {
    setSubClient<TarvikClientPluginDll>(CLIENT_TYPE_PLUGINDLL, configuration);
}

void TarvikClient::dispatch(NoTunnelClientPluginDllConfiguration& configuration) {
    setSubClient<TarvikClientPluginDllNoTunnel>(CLIENT_TYPE_PLUGINDLL_NOTUNNEL, configuration);
}

} // namespace quillon
