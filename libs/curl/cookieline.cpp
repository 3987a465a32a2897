#include "curl/cookieline.h"

#include "base/ascii.h"
#include "base/stringconversion.h"

#include <tuple>

namespace quillon {

namespace {

constexpr char const* yes = "TRUE";
constexpr char const* httpOnlyPrefix = "#HttpOnly_";

// Takes the next field off the front of `rest`.
String takeField(String& rest) {
    String field = rest.left('\t');
    rest = rest.right('\t', true);
    return field;
}

// What libcurl compares with a request's path: without quotes and the last "/", and "/" for what is no path.
String comparablePath(String const& path) {
    String const unquoted = path.starts("\"") ? path.range(1) : path;
    String const bare = unquoted.ends("\"") ? unquoted.range(0, unquoted.length() - 1) : unquoted;
    if (!bare.starts("/"))
        return "/";
    return bare.ends("/") ? bare.range(0, bare.length() - 1) : bare;
}

} // namespace

CookieTarget::CookieTarget(RequestUrl const& url)
    : host(url.getHost()),
      path(url.getPath()),
      isSecure(url.isHttps() || host == "localhost" || host == "127.0.0.1" || host == "::1") {}

// The last label of an address is a number (or, in IPv6, the text holds a colon), that of a name is none.
bool CookieTarget::isAddress() const {
    return host.find(':') != String::npos || ascii::isDigit(host[host.length() - 1]);
}

CookieLine::CookieLine(String const& line) {
    String rest = line.owned();
    m_listedDomain = takeField(rest);
    String const domain = m_listedDomain.starts(httpOnlyPrefix) ? m_listedDomain.right('_') : m_listedDomain;
    m_subdomains = takeField(rest);
    m_domain = (domain.starts(".") ? domain.range(1) : domain).lower();
    m_path = takeField(rest);
    m_secure = takeField(rest);
    m_expiry = toUint64(takeField(rest));
    m_name = takeField(rest);
    m_value = rest;
}

String CookieLine::getIdentity() const {
    return m_domain + "\t" + m_subdomains + "\t" + m_path + "\t" + m_name;
}

String CookieLine::getPair() const {
    return m_name + "=" + m_value;
}

// libcurl takes a path that reads like a flag for the flag behind it. In small letters it means the same to
// libcurl, as does every path without a "/".
String CookieLine::getLine(std::uint64_t expiry) const {
    String const path = m_path == "TRUE" || m_path == "FALSE" ? m_path.lower() : m_path;
    return m_listedDomain + "\t" + m_subdomains + "\t" + path + "\t" + m_secure + "\t" +
           toString(static_cast<unsigned long>(expiry)) + "\t" + m_name + "\t" + m_value;
}

bool CookieLine::matches(CookieTarget const& target) const {
    return (m_secure != yes || target.isSecure) && matchesHost(target) && matchesPath(target.path);
}

bool CookieLine::matchesHost(CookieTarget const& target) const {
    return target.host == m_domain ||
           (m_subdomains == yes && !target.isAddress() && target.host.ends("." + m_domain));
}

bool CookieLine::matchesPath(String const& path) const {
    String const prefix = comparablePath(m_path);
    if (prefix == "/")
        return true;
    return path.starts(prefix) && (path.length() == prefix.length() || path[prefix.length()] == '/');
}

bool CookieLine::precedes(CookieLine const& other) const {
    auto const lengths = [](CookieLine const& line) {
        return std::tuple(line.m_path.length(), line.m_domain.length(), line.m_name.length());
    };
    return lengths(*this) > lengths(other);
}

} // namespace quillon
