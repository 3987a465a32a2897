#include "curl/cookieline.h"

#include "http/uri.h"

#include "base/ascii.h"

namespace quillon {

namespace {

constexpr char const* yes = "TRUE";
constexpr char const* httpOnlyPrefix = "#HttpOnly_";

// Takes the next field off the front of `rest`.
String takeField(String& rest) {
    String const field = rest.left('\t');
    rest = rest.right('\t', true);
    return field;
}

String hostOf(String const& authority) {
    String const host = authority.rright('@');
    if (host.starts("["))
        return host.range(1).left(']').lower();
    return host.left(':').lower();
}

// The last label of an address is a number (or, in IPv6, the text holds a colon), that of a name is none.
bool isAddress(String const& host) {
    return host.find(':') != String::npos || (!host.empty() && ascii::isDigit(host[host.length() - 1]));
}

} // namespace

CookieTarget::CookieTarget(String const& url) {
    // Only the undecoded path matters; a line break in the fragment must not make this throw.
    http::Uri const uri = http::Uri::parse(url.left('#'), false);
    host = hostOf(uri.getAuthority());
    path = uri.getPath().starts("/") ? uri.getPath() : String("/");
    isSecure = uri.getScheme().equalsNoCase2("https");
}

CookieLine::CookieLine(String const& line) {
    String rest = line.owned();
    m_domain = takeField(rest);
    m_subdomains = takeField(rest);
    m_path = takeField(rest);
    m_secure = takeField(rest);
    m_expiry = toUint64(takeField(rest));
    m_name = takeField(rest);
    m_value = rest;
}

String CookieLine::getIdentity() const {
    String const domain = m_domain.starts(httpOnlyPrefix) ? m_domain.right('_') : m_domain;
    return domain.lower() + "\t" + m_path + "\t" + m_name;
}

String CookieLine::getPair() const {
    return m_name + "=" + m_value;
}

String CookieLine::getExpired() const {
    return m_domain + "\t" + m_subdomains + "\t" + m_path + "\t" + m_secure + "\t1\t" + m_name + "\t" +
           m_value;
}

bool CookieLine::matches(CookieTarget const& target) const {
    return (m_secure != yes || target.isSecure) && matchesHost(target.host) && matchesPath(target.path);
}

bool CookieLine::matchesHost(String const& host) const {
    String const domain = m_domain.starts(httpOnlyPrefix) ? m_domain.right('_') : m_domain;
    String const bare = domain.trimLeft('.').lower();
    if (host == bare)
        return true;
    return m_subdomains == yes && !isAddress(host) && host.ends("." + bare);
}

bool CookieLine::matchesPath(String const& path) const {
    if (!path.starts(m_path))
        return false;
    return path.length() == m_path.length() || m_path.ends("/") || path[m_path.length()] == '/';
}

} // namespace quillon
