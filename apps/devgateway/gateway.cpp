#include "devgateway/gateway.h"

#include "devgateway/log.h"
#include "devgateway/portal.h"
#include "devgateway/replies.h"

#include <algorithm>

namespace devgateway {

namespace {

Reply plainText(int status, std::string const& text) {
    return {status, "text/plain; charset=utf-8", text};
}

bool hasTicket(Request const& request) {
    return std::find(request.cookieNames.begin(), request.cookieNames.end(), "Tarvik-Id") !=
           request.cookieNames.end();
}

std::string language(Request const& request) {
    auto const parameter = request.parameters.find("lang");
    return parameter == request.parameters.end() ? "en" : parameter->second;
}

} // namespace

Gateway::Gateway(GatewayContent content)
    : m_content(std::move(content)), m_hostCheck(m_content.hostcheckRounds) {}

Reply Gateway::answer(Request const& request) {
    if (request.method == "POST" && request.path == hostcheckPath)
        return hostcheckPost(request);
    if (request.method == "GET" || request.method == "HEAD")
        return answerGet(request);
    return plainText(405, "Only GET and HEAD, and POST to " + std::string(hostcheckPath) + ".\n");
}

Reply Gateway::answerGet(Request const& request) {
    static std::string const mediationPath = "/mediation/";
    static std::string const modules = modulesPath;
    static std::string const certificates = certificatesPath;
    std::string const& path = request.path;

    if (path == "/")
        return {200, "text/html; charset=utf-8", portalPage(m_content.authority)};
    if (path.starts_with(mediationPath))
        return mediation(path.substr(mediationPath.size()), request);
    if (path == modules + pluginArchiveName)
        return {200, "application/zip", m_content.plugin.archive};
    if (path == modules + hostcheckerArchiveName)
        return {200, "application/zip", m_content.hostchecker.archive};
    if (path == certificates + clientCertificateName)
        return {200, "application/x-pem-file", m_content.clientPem};
    if (path == certificates + authorityCertificateName)
        return {200, "application/x-pem-file", m_content.caPem};
    if (path == "/sample/poll-script")
        return plainText(200, m_content.pollScript);
    return plainText(404, "There is nothing here.\n");
}

Reply Gateway::mediation(std::string const& kind, Request const& request) {
    if (request.parameters.count("clientversion") == 0)
        return refusal(Refusal::NoClientVersion, "the parameter clientversion is missing");
    if (!hasTicket(request))
        return refusal(Refusal::NoTicket, "the cookie Tarvik-Id is missing");
    if (kind == "plugindll")
        return pluginConfiguration(m_content.plugin, m_content.clientPem, m_content.caPem);
    if (kind == "plugindllnotunnel")
        return noTunnelConfiguration(m_content.plugin);
    if (kind == "hostchecker") {
        m_hostCheck.restart();
        return hostcheckerConfiguration(m_content.hostchecker, m_content.authority, language(request),
                                        m_content.hostcheckTimer);
    }
    if (kind == "refused")
        return refusal(Refusal::Refused, "the gateway refuses every session of this kind");
    return plainText(404, "There is no such configuration.\n");
}

Reply Gateway::hostcheckPost(Request const& request) {
    std::optional<std::string> const rules = checkedRules(request.body);
    if (!rules)
        return refusal(Refusal::NoRules, "the body does not begin with rulesChecked=");
    HostCheck::Round const round = m_hostCheck.nextRound();
    logLine("hostcheck " + describe(round) + ": " + *rules);
    return hostcheckAnswer(round);
}

} // namespace devgateway
