// What a sub-client asks of the session that runs it.
#pragma once

#include "base/credentials.h"

#include <memory>

namespace quillon {

class Policy;
class VerifiedModule;

/// The session as its sub-client knows it, which outlives the sub-client. Client thread.
class ISubClientHost {
public:
    /// Host, and port if there is one, of the session's gateway.
    virtual String getMediation() const = 0;
    /// What the user gave for a proxy.
    virtual Credentials getProxyCredentials() const = 0;
    /// The policy of the session, which does not change while a sub-client runs.
    virtual Policy const& policy() const noexcept = 0;
    /// The module installed at `path`, its signature file beside it, ready to be loaded as `kind`, as
    /// manifests name it, and noted for the session's audit. Throws EBadSignature when it is not the
    /// publisher's or the policy is against it; nothing of it has been loaded then.
    virtual std::unique_ptr<VerifiedModule> verifyModule(String const& path, char const* kind) = 0;

protected:
    ~ISubClientHost() = default;
};

} // namespace quillon
