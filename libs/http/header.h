// The header lines of an HTTP message (RFC 9110, RFC 9112).
#pragma once

#include "base/exception.h"
#include "base/strings.h"

#include <vector>

namespace quillon::http {

/// A header, or its status line, is malformed.
class EBadHeader : public Exception {
    using Exception::Exception;
};

/// The lines of a header in the order they came, looked up by name without regard to case. A value; one
/// thread at a time.
class Header {
public:
    Header() = default;
    virtual ~Header() = default;

    /// Adds one raw line, with or without its line end. A line that begins with a blank or a tab continues
    /// the value of the line before it; an empty line adds nothing; a line without ":" is kept and has no
    /// name.
    void addLine(String const& line);

    /// The lines as they came, without line ends.
    Strings getLines() const;
    /// The value of the first header of that name without surrounding white space; empty when there is none.
    String getValue(String const& name) const;
    /// The values of all headers of that name.
    Strings getValues(String const& name) const;
    bool has(String const& name) const { return find(name) != nullptr; }

protected:
    Header(Header const&) = default;
    Header(Header&&) = default;
    Header& operator=(Header const&) = default;
    Header& operator=(Header&&) = default;

private:
    struct Line {
        String text;
        String key; // empty for a line without a name
        String value;
    };

    Line const* find(String const& name) const;

    std::vector<Line> m_lines;
};

} // namespace quillon::http
