#include "tarvikclient/cli/policyreport.h"

#include "base/console.h"
#include "base/visibletext.h"
#include "tarvikclient/policyfile.h"
#include "tarvikclient/publisherkeys.h"

#include <cstdio>

namespace quillon::cli {

namespace {

constexpr unsigned drainMs = 2000;

char const* nameOf(GatewayDecision decision) {
    switch (decision) {
    case GatewayDecision::allow:
        return "allow";
    case GatewayDecision::ask:
        return "ask";
    case GatewayDecision::refuse:
        return "refuse";
    }
    return "";
}

void describeRules(String& text, PolicyRules const& rules) {
    for (GatewayPattern const& pattern : rules.allowed)
        text.append("gateway allowed: ", pattern.toString(), "\n");
    text.append(rules.allowed.empty() ? "gateways: " : "other gateways: ", nameOf(rules.others), "\n");
    text.append("certificate exceptions: ", rules.certificateExceptions ? "allow" : "refuse", "\n");
    text.append("companions: ", rules.companionsOnlyByManifest ? "only by manifest" : "any", "\n");
    for (SigningRule const& rule : rules.signedSince)
        text.append("module ", visibleText(rule.name), ": signed since ", rule.since.toString(), "\n");
}

void describeKeys(String& text, Policy const& policy) {
    for (char const* const pem : publisherKeyPems()) {
        String const fingerprint = keyFingerprint(pem);
        text.append("publisher's key: ", fingerprint, policy.acceptsKey(fingerprint) ? "\n" : " (refused)\n");
    }
}

/// Reasons belong to the user here, and to no log file.
void sendErrorsToTheUser() {
    for (LogCategory const category : {TRACE, DEBUG, ASSERT})
        console->setStream(category, "null");
    console->setStream(ERROR, "stderr");
}

} // namespace

String describe(Policy const& policy, char const* path) {
    String text;
    if (policy.hasFile())
        text.append("policy file: ", path, "\n");
    else
        text.append("no policy file: everything is as built (", path, ")\n");
    if (policy.hasFile())
        describeRules(text, policy.rules());
    describeKeys(text, policy);
    return text;
}

int showPolicy() {
    sendErrorsToTheUser();
    PolicyPlace const place = policyPlace();
    try {
        String const text = describe(*Policy::load(place), place.path);
        return std::fwrite(text.array(), 1, text.length(), stdout) == text.length() ? 0 : 1;
    } catch (EPolicy const&) {
        console->drain(drainMs);
        std::fprintf(stderr, "tarvikclient-cli: %s allows no session\n", place.path);
        return 1;
    }
}

} // namespace quillon::cli
