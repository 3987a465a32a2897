#include "tarvikclient/sessionaudit.h"

#include "base/systemlog.h"

#include <cstdio>
#include <exception>

namespace quillon {

namespace {

constexpr unsigned longestValue = 128; // bytes of the value; written, each may take four
constexpr std::size_t mostModules = 2;

void appendValue(String& line, char const* key, String const& value) {
    line.append(line.empty() ? "session " : " ", key, "=\"");
    for (char const c : value.range(0, longestValue)) {
        if (c >= 0x20 && c < 0x7F && c != '"' && c != '\\') {
            line.append(c);
            continue;
        }
        char escaped[5];
        std::snprintf(escaped, sizeof escaped, "\\x%02X",
                      static_cast<unsigned>(static_cast<unsigned char>(c)));
        line.append(escaped);
    }
    line.append(value.length() > longestValue ? "...\"" : "\"");
}

} // namespace

void SessionAudit::begin() {
    m_gateway.clear();
    m_modules.clear();
    m_outcome = "";
}

void SessionAudit::setGateway(String const& authority) {
    m_gateway = authority.rright('@').owned();
}

void SessionAudit::setModule(String const& name, String const& sha256) {
    if (m_modules.size() < mostModules)
        m_modules.push_back({name.owned(), sha256.owned()});
}

void SessionAudit::write() const noexcept {
    try {
        String line;
        appendValue(line, "gateway", m_gateway);
        for (auto const& [name, sha256] : m_modules) {
            appendValue(line, "module", name);
            appendValue(line, "sha256", sha256);
        }
        appendValue(line, "outcome", m_outcome);
        m_sink(line);
    } catch (...) { // a line that is lost must not cost the session's last notification
    }
}

void SessionAudit::toSystemLog(String const& line) {
    native::systemLog(TRACE, String(line).str());
}

} // namespace quillon
