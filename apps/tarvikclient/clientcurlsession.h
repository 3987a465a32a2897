// The client's HTTPS session.
#pragma once

#include "curl/curlsession.h"
#include "tarvikclient/clientlocalconfiguration.h"

namespace quillon {

/// Decides for each request, from the user's settings as they are at that moment, whether the server's
/// certificate is verified and which proxy credentials go with it. The settings must outlive the session.
class TarvikClientCurlSession : public CurlSession {
public:
    explicit TarvikClientCurlSession(ClientLocalConfiguration const& settings) : m_settings(settings) {}

    /// False for a URL whose authority, exactly as written there, is one of the ignored domains.
    bool verifySSL(String const& url) override;
    /// No proxy of its own, so that libcurl's defaults apply; with the user's proxy credentials.
    Proxy getProxy(String const& url) override;

private:
    ClientLocalConfiguration const& m_settings;
};

} // namespace quillon
