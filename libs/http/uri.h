// A URI in its components (RFC 3986).
#pragma once

#include "base/exception.h"

#include <map>
#include <optional>

namespace quillon::http {

/// A URI, or a component given to a setter, is malformed.
class UriComponentException : public Exception {
    using Exception::Exception;
};

/// A URI with a hierarchical part, taken apart so that single components can be changed. A value; one thread
/// at a time. Strings given to it are copied where their bytes belong to the caller.
///
///     Uri uri = Uri::parse("tarvik://user@gate.example/a?b=c", true);
///     uri.setScheme("https");
///     uri.setAuthority("gate.example");
///     uri.getFullUri(); // "https://gate.example/a?b=c"
class Uri {
public:
    /// By name; names are compared byte for byte.
    using Parameters = std::map<String, String>;

    Uri() = default;

    /// Takes any text apart; what the setters reject is accepted here. With `decode` the path, the fragment
    /// and the parameters are percent-decoded. Of parameters of the same name the last one counts. Throws
    /// UriComponentException when the fragment holds a line break, the only text that is no URI.
    static Uri parse(String const& text, bool decode);

    String const& getScheme() const noexcept { return m_scheme; }
    /// User info, host and port, as they were given.
    String const& getAuthority() const noexcept { return m_authority; }
    /// Decoded, if parse() was asked to decode.
    String const& getPath() const noexcept { return m_path.text; }
    String const& getFragment() const noexcept { return m_fragment.text; }
    Parameters const& getParameters() const noexcept { return m_parameters; }
    /// Empty when there is none of that name.
    String getParameter(String const& name) const;

    /// Throws UriComponentException when `scheme` contains ":", "/", "?" or "#".
    void setScheme(String const& scheme);
    /// Throws UriComponentException when `authority` contains "/", "?" or "#".
    void setAuthority(String const& authority);
    /// Puts "/" in front of a path that is not empty and does not begin with one. `path` is unencoded text.
    /// Throws UriComponentException when it contains "?" or "#".
    void setPath(String const& path);
    /// `fragment` is unencoded text.
    void setFragment(String const& fragment);
    /// Adds or replaces; `name` and `value` are unencoded text.
    void setParameter(String const& name, String const& value);
    void delParameter(String const& name);

    /// The parameters in the order of their names, "name=value" joined by "&", percent-encoded.
    String getQuery() const;
    /// The whole URI, fit to be sent. The path and the fragment are written as parse() found them, unless
    /// they have been set since; only bytes that may not stand there are encoded. A path behind the authority
    /// always begins with "/", so that it can never become a part of the host's name.
    String getFullUri() const;

    /// Percent-encodes every byte but letters, digits, "-", ".", "_" and "~".
    static String encode(String const& text);
    /// Undoes percent-encoding; a "%" without two hexadecimal digits behind it stays as it is.
    static String decode(String const& text);

private:
    /// A component as callers see it and, while it is what parse() found, as it was written, because decoding
    /// "%2F" or "%25" cannot be undone.
    struct Component {
        String text;
        std::optional<String> written;
    };

    void parseQuery(String const& query);

    String m_scheme;
    String m_authority;
    Component m_path;
    Parameters m_parameters;
    Component m_fragment;
    bool m_decode = false;
};

} // namespace quillon::http
