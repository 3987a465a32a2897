// The client's HTTPS session.
#pragma once

#include "curl/curlsession.h"
#include "tarvikclient/clientlocalconfiguration.h"
#include "tarvikclient/policy.h"

namespace quillon {

/// Decides for each request, from the user's settings as they are at that moment, whether the server's
/// certificate is verified and which proxy credentials go with it, and from the policy whether it may be made
/// at all. The settings must outlive the session.
class TarvikClientCurlSession : public CurlSession {
public:
    explicit TarvikClientCurlSession(ClientLocalConfiguration const& settings);

    /// What later requests go by; no policy file until then. Any thread.
    void setPolicy(std::shared_ptr<Policy const> const& policy);

    /// Whether the policy that requests go by lets the user's list of hosts count. Any thread.
    bool allowsCertificateExceptions() const { return policy()->allowsCertificateExceptions(); }

    /// False for a URL whose authority, exactly as written there, is one of the ignored domains, unless the
    /// policy allows no exceptions. Throws EPolicy, after a log line, for a host that the policy refuses.
    bool verifySSL(String const& url) override;
    /// No proxy of its own, so that libcurl's defaults apply; with the user's proxy credentials.
    Proxy getProxy(String const& url) override;

private:
    std::shared_ptr<Policy const> policy() const;

    ClientLocalConfiguration const& m_settings;
    mutable Mutex m_policyMutex;
    std::shared_ptr<Policy const> m_policy = std::make_shared<Policy const>();
};

} // namespace quillon
