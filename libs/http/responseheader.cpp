#include "http/responseheader.h"

#include "base/ascii.h"
#include "base/failure.h"
#include "base/stringconversion.h"

#include <algorithm>
#include <optional>

namespace quillon::http {

namespace {

constexpr unsigned codeLength = 3;

std::optional<std::uint32_t> codeOf(String const& statusLine) {
    if (!statusLine.starts("HTTP/"))
        return std::nullopt;
    String const code = statusLine.right(' ', true).trimLeft(' ').left(' ');
    if (code.length() != codeLength || !std::all_of(code.begin(), code.end(), ascii::isDigit))
        return std::nullopt;
    return toUint32(code);
}

} // namespace

ResponseHeader::ResponseHeader(String const& statusLine)
    : m_statusLine(statusLine.left('\n').trimRight('\r').owned()) {}

String ResponseHeader::getVersion() const {
    return m_statusLine.starts("HTTP/") ? m_statusLine.left(' ').right('/') : String();
}

std::uint32_t ResponseHeader::getResponseCode() const {
    if (!m_isCodeExtracted)
        _extractResponseCode();
    return m_code;
}

void ResponseHeader::_extractResponseCode() const {
    std::optional<std::uint32_t> const code = codeOf(m_statusLine);
    if (!code)
        fail<EBadHeader>("http.Response", "extractResponseCode", "bad header: " + m_statusLine,
                         {"libs/http/response.cpp", 29});
    m_code = *code;
    m_isCodeExtracted = true;
}

} // namespace quillon::http
