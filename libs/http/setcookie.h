// A cookie as a server sets it (RFC 6265).
#pragma once

#include "base/string.h"

#include <optional>
#include <utility>
#include <vector>

namespace quillon::http {

/// The fields of one "Set-Cookie" header. A value; nothing is checked or encoded.
class SetCookie {
public:
    using Attributes = std::vector<std::pair<String, String>>;

    SetCookie() = default;
    SetCookie(String const& name, String const& value) : m_name(name.owned()), m_value(value.owned()) {}

    String const& getName() const noexcept { return m_name; }
    String const& getValue() const noexcept { return m_value; }
    String const& getPath() const noexcept { return m_path; }
    String const& getDomain() const noexcept { return m_domain; }
    /// A date in the form of HTTP; empty for a cookie of the session.
    String const& getExpires() const noexcept { return m_expires; }
    /// Further attributes in the order they were added.
    Attributes const& getAttributes() const noexcept { return m_attributes; }
    bool isSecure() const noexcept { return m_secure; }
    /// In seconds, if set.
    std::optional<int> getMaxAge() const noexcept { return m_maxAge; }

    void setName(String const& name) { m_name = name.owned(); }
    void setValue(String const& value) { m_value = value.owned(); }
    void setPath(String const& path) { m_path = path.owned(); }
    void setDomain(String const& domain) { m_domain = domain.owned(); }
    void setExpires(String const& date) { m_expires = date.owned(); }
    void addAttribute(String const& name, String const& value) {
        m_attributes.emplace_back(name.owned(), value.owned());
    }
    void setSecure(bool secure) noexcept { m_secure = secure; }
    void setMaxAge(std::optional<int> seconds) noexcept { m_maxAge = seconds; }

    /// The header's value: the name and the value, then the attributes that are set.
    String toString() const;

private:
    String m_name;
    String m_value;
    String m_path;
    String m_domain;
    String m_expires;
    Attributes m_attributes;
    bool m_secure = false;
    std::optional<int> m_maxAge;
};

} // namespace quillon::http
