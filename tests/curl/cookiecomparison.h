// The session's cookies beside those of libcurl alone.
#pragma once

#include "trustingsession.h"

#include <memory>

typedef void CURL;

namespace quillon::test {

/// Makes each request twice, by a CurlSession and by one libcurl handle that is left to itself, and tells
/// where they differ. The URLs' hosts are never looked up: one server takes everything as a proxy.
class CookieComparison {
public:
    CookieComparison();

    /// Requests `url`, whose reply sets `cookies`. Empty when both sent and now hold the same cookies in the
    /// same order, else what each did.
    std::string request(std::string const& url, std::vector<std::string> const& cookies);

private:
    struct Cleanup {
        void operator()(CURL* handle) const;
    };

    Reply answer(Request const& request) const;
    std::string requestPlainly(std::string const& url);
    std::string requestBySession(std::string const& url);
    std::vector<std::string> heldPlainly() const;

    HeaderLines m_cookies; // set before a request, read by the server's thread during it
    TestServer m_server;
    ProxySession m_session;
    std::unique_ptr<CURL, Cleanup> m_plain;
};

/// Makes up requests and replies from `bytes`, any bytes, and compares until they end or something differs.
/// What differs, with the requests up to there, or nothing.
std::string compareCookies(std::string_view bytes);

} // namespace quillon::test
