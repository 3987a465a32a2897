#include "tarvikclient/policy.h"

#include "base/log.h"
#include "http/uri.h"
#include "tarvikclient/policyfile.h"

#include <algorithm>

namespace quillon {

namespace {

constexpr unsigned short plainPort = 80;

/// Where libcurl goes for a URL.
std::optional<http::HostPort> targetOf(String const& url) {
    http::Uri const uri = http::Uri::parse(url, false);
    String const authority = uri.getAuthority();
    return http::HostPort::parse(authority.rright('@'),
                                 uri.getScheme().equalsNoCase2("http") ? plainPort : gatewayPort);
}

bool refuseModule(DllInfos const& record, String const& reason) {
    log(ERROR, "Policy", "acceptsModule",
        "The module \"" + record.name + "\", signed " + record.signdate + ", is refused: " + reason);
    return false;
}

} // namespace

std::shared_ptr<Policy const> Policy::load(PolicyPlace const& place) {
    std::optional<String> const text = readPolicyFile(place);
    if (!text)
        return std::make_shared<Policy const>();
    auto policy = std::make_shared<Policy const>(readPolicyRules(*text, place.path));
    log(TRACE, "Policy", "load", String("The policy ") + place.path + " is in force");
    return policy;
}

String Policy::nameToUse(String const& authority) const {
    bool const isAscii =
        std::all_of(authority.begin(), authority.end(), [](unsigned char c) { return c < 0x80; });
    auto const place = http::HostPort::parse(authority, gatewayPort);
    return m_hasFile && !isAscii && place ? place->toString(gatewayPort) : authority;
}

GatewayDecision Policy::decideOn(http::HostPort const& gateway) const {
    bool const listed = std::any_of(m_rules.allowed.begin(), m_rules.allowed.end(),
                                    [&](GatewayPattern const& pattern) { return pattern.matches(gateway); });
    return listed ? GatewayDecision::allow : m_rules.others;
}

bool Policy::allowsRequest(String const& url) const {
    if (m_rules.others != GatewayDecision::refuse)
        return true;
    auto const target = targetOf(url);
    return target && decideOn(*target) == GatewayDecision::allow;
}

bool Policy::acceptsModule(DllInfos const& record) const {
    if (m_rules.signedSince.empty())
        return true;
    auto const date = DateTime::parse(record.signdate);
    if (!date)
        return refuseModule(record, "its signing date cannot be read");
    String const versionAndName = record.version + record.name;
    for (SigningRule const& rule : m_rules.signedSince)
        if (versionAndName.ends(rule.name) && *date < rule.since)
            return refuseModule(record, "its signature counts from " + rule.since.toString() + " on");
    return true;
}

bool Policy::acceptsKey(String const& fingerprint) const {
    auto const& refused = m_rules.refusedKeys;
    return std::find(refused.begin(), refused.end(), fingerprint) == refused.end();
}

} // namespace quillon
