// A session for servers whose certificate nobody has signed.
#pragma once

#include "curl/curlwrapper.h"

#include "support/testserver.h"

namespace quillon::test {

class TrustingSession : public CurlSession {
public:
    bool verifySSL(String const&) override { return false; }
};

inline String urlOf(TestServer const& server, std::string_view target = "/") {
    return String::copyOf(server.url(target));
}

/// Whether a GET was completed, whatever the status.
inline bool get(CurlSession& session, String const& url) {
    Memory body;
    return session.request(url, body);
}

} // namespace quillon::test
