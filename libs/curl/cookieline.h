// One cookie in the Netscape file format.
#pragma once

#include "curl/requesturl.h"

namespace quillon {

/// What a request is checked against when cookies are chosen for it.
struct CookieTarget {
    /// `url` is one without an error.
    explicit CookieTarget(RequestUrl const& url);
    bool isAddress() const;

    String host; // lower case, without port and brackets
    String path; // at least "/"
    bool isSecure;
};

/// A line as libcurl lists and takes cookies: domain, whether subdomains match, path, whether TLS is needed,
/// expiry, name and value, parted by tabs. A value.
class CookieLine {
public:
    explicit CookieLine(String const& line);

    String const& getName() const noexcept { return m_name; }
    String const& getValue() const noexcept { return m_value; }
    /// In lower case; without the dot that says that subdomains match.
    String const& getDomain() const noexcept { return m_domain; }
    /// What stays the same when a cookie's value, expiry or flags change.
    String getIdentity() const;
    /// "name=value".
    String getPair() const;
    /// Whether the cookie is to be sent with a request, in the view of libcurl's cookie engine: as RFC 6265,
    /// 5.4, but to the machine itself secure ones always go.
    bool matches(CookieTarget const& target) const;
    /// Whether it is sent before the other one if both are; of two that are equal here the younger one is.
    bool precedes(CookieLine const& other) const;
    /// Whether it is no longer to be sent; `now` in seconds since 1970. A cookie of the session never is.
    bool isExpired(std::uint64_t now) const { return m_expiry != 0 && m_expiry <= now; }
    /// A line that puts the cookie into a store. It cannot carry an empty path, which becomes "/": the same
    /// requests get the cookie, but perhaps in another place among others.
    String getLine() const { return getLine(m_expiry); }
    /// A line that removes the cookie from the store it is put into.
    String getExpired() const { return getLine(1); }

private:
    String getLine(std::uint64_t expiry) const;
    bool matchesHost(CookieTarget const& target) const;
    bool matchesPath(String const& path) const;

    String m_listedDomain; // as it stands in the line
    String m_domain;
    String m_subdomains;
    String m_path;
    String m_secure;
    std::uint64_t m_expiry; // in seconds since 1970; 0 for a cookie of the session
    String m_name;
    String m_value;
};

} // namespace quillon
