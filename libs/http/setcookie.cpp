#include "http/setcookie.h"

#include "base/stringconversion.h"

namespace quillon::http {

String SetCookie::toString() const {
    String text;
    text.append(m_name, '=', m_value);
    if (!m_domain.empty())
        text.append("; domain=", m_domain);
    if (!m_path.empty())
        text.append("; path=", m_path);
    if (!m_expires.empty())
        text.append("; expires=\"", m_expires, '"');
    for (auto const& [name, value] : m_attributes)
        text.append("; ", name, "=\"", value, '"');
    if (m_secure)
        text.append("; secure");
    if (m_maxAge)
        text.append("; max-age=", quillon::toString(*m_maxAge));
    return text;
}

} // namespace quillon::http
