// The header of an HTTP reply.
#pragma once

#include "base/strings.h"
#include "http/header.h"

#include <cstdint>

namespace quillon::http {

/// A status line and the header lines behind it. A value; one thread at a time, the constant operations too:
/// the status code is extracted at its first use.
class ResponseHeader : public Header {
public:
    /// No reply: the status line is empty and there are no lines.
    ResponseHeader() = default;
    /// `statusLine` in any version of HTTP: "HTTP/1.1 200 OK", "HTTP/2 200". A line end is cut off.
    explicit ResponseHeader(String const& statusLine);

    String const& getStatusLine() const noexcept { return m_statusLine; }
    /// What stands behind "HTTP/" in the status line, as "1.1" or "2"; empty when it is no status line.
    String getVersion() const;
    /// Whether the status code has been extracted.
    bool isResponseCodeExtracted() const noexcept { return m_isCodeExtracted; }
    /// The status code; extracts it when that has not been done. Throws EBadHeader as _extractResponseCode().
    std::uint32_t getResponseCode() const;
    /// Reads the status code, three digits, from the status line and keeps it. Throws EBadHeader when the
    /// status line is none.
    void _extractResponseCode() const;
    /// The values of the "Set-Cookie" lines.
    Strings getSetCookies() const { return getValues("Set-Cookie"); }
    /// The entity tag as it stands, with its quotes; empty when there is none.
    String getETag() const { return getValue("ETag"); }

private:
    String m_statusLine;
    mutable bool m_isCodeExtracted = false;
    mutable std::uint32_t m_code = 0;
};

} // namespace quillon::http
