// The body of the client thread.
#include "tarvikclient/client.h"

#include "base/console.h"
#include "base/failure.h"
#include "base/file.h"
#include "base/stringconversion.h"
#include "base/visibletext.h"
#include "curl/requestinfo.h"
#include "curl/requesturl.h"
#include "http/setcookie.h"
#include "http/uri.h"
#include "tarvikclient/accidentwatch.h"
#include "tarvikclient/mediationresponse.h"
#include "tarvikclient/policyfile.h"

namespace quillon {

namespace {

constexpr unsigned statusOk = 200;

void logError(String const& text) {
    log(ERROR, "TarvikClient", "main", text);
}

/// The name or address of the host that requests go to, which a launch URL names by `host`. Throws when it is
/// not the one that reads there, since then what is shown and trusted would not be what is asked.
String checkedHost(String const& host) {
    RequestUrl const gateway("https://" + host + "/");
    if (gateway.getError() == 0 && host.find('@') == String::npos)
        return gateway.getHost();
    fail<http::UriComponentException>("TarvikClient", "main",
                                      "the launch URL names no gateway, or one that can be read in two ways");
}

} // namespace

String TarvikClient::getLangFromArg(String const& url) {
    try {
        return http::Uri::parse(url, true).getParameter("lang");
    } catch (http::UriComponentException const&) {
        return String::null; // a URL that is none names no language; the session reports it
    }
}

void TarvikClient::main() {
    SignalStack const stack;
    String const log = console->getFilename(ERROR);
    m_audit.begin();
    watchForAccidents(log);
    m_mark.begin(File::getUserApplicationDataDirectory(), log);
    pass();
    m_mark.end();
    m_audit.write();
}

void TarvikClient::pass() {
    m_audit.setOutcome("failed");
    m_failing = {FailureKind::other};
    m_isModuleMissing = false;
    try {
        session();
        return;
    } catch (EBadSignature const&) {
        logError("Bad component signature");
        if (!m_isModuleMissing)
            m_failing.kind = FailureKind::badSignature;
    } catch (Exception const& e) {
        if (dynamic_cast<EPolicy const*>(&e))
            m_failing.kind = FailureKind::policy;
        traceCaught(e, {"apps/tarvikclient/client.cpp", 155});
    } catch (...) {
        logError("unhandled exception");
    }
    if (!endedByOrder())
        notifyFailure();
}

void TarvikClient::notifyFailure() {
    {
        TSynchronize<Mutex> lock(m_mutex);
        m_failure = m_failing;
    }
    m_notify.onFatalError(String::null);
}

/// Whether the session was cancelled, and has now been said to be finished: whoever ordered its end is not
/// told of a failure, which the order itself may have brought about.
bool TarvikClient::endedByOrder() {
    bool const cancelled = m_downloadManager.getSession().isCancelled();
    if (cancelled) {
        m_audit.setOutcome("stopped");
        m_notify.onStatus(STATUS_FINISHED);
    }
    return cancelled;
}

void TarvikClient::session() {
    applyPolicy();
    if (!loadConfiguration())
        return;
    m_configuration->accept(*this);
    m_failing.kind = FailureKind::moduleNotFetched;
    runSubClient();
    m_audit.setOutcome("finished");
    m_notify.onStatus(STATUS_FINISHED);
}

/// Asks the mediation service what to do. False when the pass is over, which has been notified. The reply,
/// with its secrets, is gone when this returns: the session that follows may last for days.
bool TarvikClient::loadConfiguration() {
    m_failing.kind = FailureKind::badLink;
    String const url = prepareRequest();
    m_failing.kind = FailureKind::other;
    if (!mayBegin())
        return false;
    Memory body;
    RequestInfo information;
    if (!m_downloadManager.getSession().request(url, body, information)) {
        if (!endedByOrder()) {
            m_audit.setOutcome("unreachable");
            {
                TSynchronize<Mutex> lock(m_mutex);
                m_connectError = information;
            }
            m_notify.onConnectError(information);
        }
        return false;
    }
    m_failing.kind = FailureKind::replyNotUnderstood;
    unsigned const status = information.getResponseHeader().getResponseCode();
    if (status != statusOk) {
        logError("mediation response is HTTP." + toString(status));
        m_failing = {FailureKind::gatewayError, status};
    }
    MediationResponse const response{String(body)};
    if (!response.isSuccess()) {
        logError(response.getException());
        m_failing.kind = FailureKind::refusedByGateway;
        m_failing.gatewaysWords = cutText(response.getException(), SessionFailure::longestWords).clone();
        if (!endedByOrder())
            notifyFailure();
        return false;
    }
    m_configuration = ClientConfiguration::load(*response.resultReader());
    return true;
}

/// Turns the launch URL into the request to the mediation service and makes the session ready for it.
String TarvikClient::prepareRequest() {
    String launchUrl;
    {
        TSynchronize<Mutex> lock(m_mutex);
        launchUrl = m_url;
    }
    http::Uri uri = http::Uri::parse(launchUrl, true);
    String const authority = uri.getAuthority();
    bool const hasUserInfo = authority.find('@') != String::npos;
    String const userInfo = authority.left('@', true);
    String const host = m_policy->nameToUse(hasUserInfo ? authority.right('@') : authority);
    String const name = checkedHost(host);
    m_audit.setGateway(host);
    {
        TSynchronize<Mutex> lock(m_mutex);
        m_mediation = host;
    }
    uri.setScheme("https");
    uri.setAuthority(host);
    uri.setParameter("clientversion", version);
    installCookie(name, userInfo);
    m_downloadManager.getSession().setUserAgent(String("TarvikClient ") + version + " " +
                                                console->getOsName());
    m_downloadManager.setServer(host);
    DownloadManager::StaticDownloadWrapper::m_downloadManager = &m_downloadManager;
    return uri.getFullUri();
}

void TarvikClient::installCookie(String const& host, String const& userInfo) {
    http::SetCookie cookie;
    cookie.setName("Tarvik-Id");
    cookie.setValue(userInfo);
    cookie.setPath("/");
    cookie.setDomain(host);
    m_downloadManager.getSession().setCookie(cookie);
}

void TarvikClient::runSubClient() {
    // Only this thread sets the pointer, so it may use it without the lock; clearing it is another matter.
    m_subClient->run(m_downloadManager.getSession());
    takeSubClient().reset(); // outside the lock: unloading a module takes as long as the module likes
}

} // namespace quillon
