#include "tarvikclient/hostcheckerclient.h"

#include "base/failure.h"
#include "base/file.h"
#include "http/uri.h"
#include "tarvikclient/mediationresponse.h"
#include "tarvikclient/moduleinstall.h"

#include <algorithm>

namespace quillon {

namespace {

/// Seconds as milliseconds; 0 stands for one second, and a timer beyond the range of the wait for its
/// longest.
unsigned periodMs(std::uint32_t seconds) {
    constexpr std::uint64_t longest = 0xFFFFFFFF;
    return static_cast<unsigned>(std::min(std::max<std::uint64_t>(seconds, 1) * 1000, longest));
}

} // namespace

void ResponseHostcheckerResult::write(IKeyReader& reader) {
    ConfReadHelper::readKey(reader, "continue", goOn, ConfReadHelper::optional);
    ConfReadHelper::readKey(reader, "info", info, ConfReadHelper::optional);
}

TarvikClientHostchecker::TarvikClientHostchecker(ISubClientHost& host, ITarvikClientNotify& notify,
                                                 ClientHostcheckerDllConfiguration& configuration,
                                                 DownloadManager& downloads)
    : m_host(host), m_notify(notify), m_configuration(configuration), m_downloads(downloads) {}

int TarvikClientHostchecker::run(CurlSession& session) {
    m_notify.onStatus(STATUS_DOWNLOADING_COMPENENTS);
    downloadDll();
    if (session.isCancelled())
        return 0;
    loadDll();
    m_module->start(getHostcheckerDir() + "/", m_configuration.hostname, m_configuration.language);
    m_notify.onStatus(STATUS_HOSTCHECKING);
    while (!m_stopSignal.isStopped()) {
        String const rules = m_module->getValidRules(m_configuration.hostcheckingrequest);
        if (!sendResponse(session, rules))
            break;
        m_stopSignal.wait(periodMs(m_configuration.hostcheckingtimer));
    }
    m_module->stop();
    return 0;
}

String TarvikClientHostchecker::getHostcheckerDir() const {
    return File::getUserApplicationDataDirectory() + "/" + "hostchecker";
}

String TarvikClientHostchecker::getDllPath(Dll const& dll, String const& directory) const {
    for (String const& name : {dll.version, dll.pattern})
        if (!staysInDirectory(name, "TarvikClientHostchecker", "getDllPath"))
            return String::null;
    return directory + "/" + dll.version + "/" + dll.pattern;
}

void TarvikClientHostchecker::downloadDll() {
    Dll const& dll = m_configuration.hostcheckerDlls.mac;
    String const modulePath = getDllPath(dll, getHostcheckerDir());
    if (modulePath.empty())
        return;
    if (!staysInDirectory(dll.filename, "DownloadManager", "downloadFromConfig"))
        return;
    ModuleInstall install(
        {ModuleManifest::hostchecker, getHostcheckerDir(), File::getFileName(dll.pattern), modulePath},
        m_host.policy());
    install.fetch(m_downloads, dll);
    // Without a module in the archive the one that was there is used.
    if (!install.missing())
        install.commit();
}

void TarvikClientHostchecker::loadDll() {
    String const modulePath = getDllPath(m_configuration.hostcheckerDlls.mac, getHostcheckerDir());
    log(TRACE, "TarvikClient", "loadDll", "Load macosx module");
    m_module = std::make_unique<HostCheckerDllInstance>(
        m_host.verifyModule(modulePath, ModuleManifest::hostchecker));
}

bool TarvikClientHostchecker::sendResponse(CurlSession& session, String const& rules) {
    Memory response;
    String const body = "rulesChecked=" + http::Uri::encode(rules);
    if (!session.request(m_configuration.responseurl, response, body)) {
        log(ERROR, "TarvikClientHostchecker", "run", "Error while sending response");
        return false;
    }
    try {
        return readAnswer(response);
    } catch (Exception const& e) {
        // An answer that cannot be read ends the checks as a refusal does.
        traceCaught(e);
        log(ERROR, "TarvikClientHostchecker", "run", "Bad response from mediation");
        return false;
    }
}

bool TarvikClientHostchecker::readAnswer(Memory const& body) {
    MediationResponse const answer{String(body)};
    if (!answer.isSuccess()) {
        log(ERROR, "TarvikClientHostchecker", "run", answer.getException());
        log(ERROR, "TarvikClientHostchecker", "run", "Bad response from mediation");
        return false;
    }
    auto const result = answer.getResult<ResponseHostcheckerResult>();
    if (!result.info.empty())
        log(TRACE, "TarvikClientHostchecker", "sendResponse", result.info);
    return result.goOn;
}

} // namespace quillon
