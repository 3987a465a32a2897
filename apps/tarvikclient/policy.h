// The administrator's policy: what a session may do beyond what the gateway asks.
#pragma once

#include "tarvikclient/dllinfos.h"
#include "tarvikclient/policyplace.h"
#include "tarvikclient/policyrules.h"

#include <memory>

namespace quillon {

/// Decides before the session and during it. Without a policy file everything is allowed. Constant: any
/// thread may ask a policy that is shared.
class Policy {
public:
    /// Without a file.
    Policy() = default;
    explicit Policy(PolicyRules rules) : m_rules(std::move(rules)), m_hasFile(true) {}
    /// The policy that is in force now. Throws EPolicy, with the reason in the log, for a file that cannot be
    /// trusted, read or understood: then no session may begin.
    static std::shared_ptr<Policy const> load(PolicyPlace const& place = policyPlace());

    bool hasFile() const noexcept { return m_hasFile; }
    PolicyRules const& rules() const noexcept { return m_rules; }

    /// The authority that a session uses for one that it was given: under a policy an international name in
    /// its ASCII form, so that what was decided on is what is asked, whatever the process's locale makes of
    /// it.
    String nameToUse(String const& authority) const;
    /// Whether a session with the gateway may begin.
    GatewayDecision decideOn(http::HostPort const& gateway) const;
    /// Whether a session's request may go to `url`. Where other gateways are refused the gateway's own files
    /// and answers may not come from elsewhere either; else who was allowed answers for where they do.
    bool allowsRequest(String const& url) const;
    /// Whether the user's list of hosts without certificate checks counts.
    bool allowsCertificateExceptions() const noexcept { return m_rules.certificateExceptions; }
    /// Whether nothing but a module and its signature is installed unless a manifest lists it.
    bool companionsOnlyByManifest() const noexcept { return m_rules.companionsOnlyByManifest; }
    /// Whether a module's record, whose signature is the publisher's, is new enough; logs why it is not.
    ///
    /// The signature covers version, name and date as one text, so whoever delivers a record may move its
    /// bounds: "1.0" and "plugin" may come as "1" and ".0plugin". So a rule for "plugin" counts for all
    /// whose version and name together end in it, and with any rule a record needs a date.
    bool acceptsModule(DllInfos const& record) const;
    /// `fingerprint` as keyFingerprint() gives it.
    bool acceptsKey(String const& fingerprint) const;

private:
    PolicyRules m_rules;
    bool m_hasFile = false;
};

} // namespace quillon
