// One cookie in the Netscape file format.
#pragma once

#include "base/string.h"

namespace quillon {

/// What a request is checked against when cookies are chosen for it.
struct CookieTarget {
    /// Takes the host, the path and the scheme out of a URL.
    explicit CookieTarget(String const& url);

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
    String const& getPath() const noexcept { return m_path; }
    /// What two cookies of one store cannot have in common: of equal ones the later replaces the earlier.
    String getIdentity() const;
    /// "name=value".
    String getPair() const;
    /// Whether the cookie is to be sent with a request (RFC 6265, 5.4).
    bool matches(CookieTarget const& target) const;
    /// Whether it is no longer to be sent; `now` in seconds since 1970. A cookie of the session never is.
    bool isExpired(std::uint64_t now) const { return m_expiry != 0 && m_expiry <= now; }
    /// A line that removes the cookie from the store it is put into.
    String getExpired() const;

private:
    bool matchesHost(String const& host) const;
    bool matchesPath(String const& path) const;

    String m_domain; // as it stands in the line
    String m_subdomains;
    String m_path;
    String m_secure;
    std::uint64_t m_expiry; // in seconds since 1970; 0 for a cookie of the session
    String m_name;
    String m_value;
};

} // namespace quillon
