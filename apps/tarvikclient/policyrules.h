// What an administrator's policy says.
#pragma once

#include "base/datetime.h"
#include "http/hostport.h"

#include <vector>

namespace quillon {

/// What happens before a session with a gateway.
enum class GatewayDecision { allow, ask, refuse };

/// The port of a gateway that is named without one.
constexpr unsigned short gatewayPort = 443;

/// Gateways that are allowed: one place, or all names below a domain on one port.
struct GatewayPattern {
    http::HostPort place;
    bool below =
        false; ///< "*.domain": any number of labels in front of the place's host, and not that itself

    bool matches(http::HostPort const& gateway) const;
    /// As it is written in a policy.
    String toString() const;
};

/// From when on signatures of a module count.
struct SigningRule {
    String name;
    DateTime since;
};

/// A policy's contents; as they are here, those of a program without a policy file. A value.
struct PolicyRules {
    std::vector<GatewayPattern> allowed;
    GatewayDecision others = GatewayDecision::allow;
    bool certificateExceptions = true;
    bool companionsOnlyByManifest = false;
    std::vector<SigningRule> signedSince;
    std::vector<String> refusedKeys; ///< fingerprints in lower case
};

/// Reads a policy's text. Nothing is passed over: an element or attribute that is not known or stands where
/// it does not belong, one too many, and a value that is not exactly one of those that it can have is an
/// EPolicy, with the reason in the log. `path` is for that reason alone.
PolicyRules readPolicyRules(String const& text, String const& path);

} // namespace quillon
