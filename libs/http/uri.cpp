#include "http/uri.h"

#include "base/failure.h"
#include "base/splitter.h"
#include "http/loggableuri.h"
#include "http/uri_encoding.h"

#include <algorithm>

namespace quillon::http {

namespace {

unsigned firstOf(String const& text, std::string_view set) {
    std::size_t const hit = text.view().find_first_of(set);
    return hit == std::string_view::npos ? text.length() : static_cast<unsigned>(hit);
}

// Takes what stands before the first byte of `set` off the front of `rest`.
String take(String& rest, std::string_view set) {
    unsigned const end = firstOf(rest, set);
    String piece = rest.range(0, end);
    rest = rest.range(end);
    return piece;
}

[[noreturn]] void failComponent(char const* method, char const* message, String const& value,
                                Place place = std::source_location::current()) {
    fail<UriComponentException>("Uri", method, String(message) + value, place);
}

bool containsAny(String const& value, std::string_view set) {
    return firstOf(value, set) != value.length();
}

} // namespace

// The components are those of the expression in RFC 3986, appendix B. It is applied by hand:
// regular-expression engines that recurse per character do not survive a long launch URL.
Uri Uri::parse(String const& text, bool decode) {
    Uri uri;
    uri.m_decode = decode;
    String rest = text.owned();

    unsigned const schemeEnd = firstOf(rest, ":/?#");
    if (schemeEnd > 0 && schemeEnd < rest.length() && rest[schemeEnd] == ':') {
        uri.m_scheme = rest.range(0, schemeEnd);
        rest = rest.range(schemeEnd + 1);
    }
    if (rest.starts("//")) {
        rest = rest.range(2);
        uri.m_authority = take(rest, "/?#");
    }
    String const path = take(rest, "?#");
    String const query = take(rest, "#").range(1);
    String const fragment = rest.range(1);
    if (containsAny(fragment, "\r\n"))
        failComponent("setScheme", "Invalid uri: ", loggableUri(text), {"libs/http/uri.cpp", 19});

    if (!query.empty())
        uri.parseQuery(query);
    uri.m_path = {decode ? Uri::decode(path) : path, path};
    uri.m_fragment = {decode ? Uri::decode(fragment) : fragment, fragment};
    return uri;
}

void Uri::parseQuery(String const& query) {
    for (CharSplitter pieces(query, '&'); pieces.valid();) {
        String const piece = pieces.next();
        String const name = piece.left('=');
        String const value = piece.right('=', true);
        if (m_decode)
            setParameter(decode(name), decode(value));
        else
            setParameter(name, value);
    }
}

String Uri::getParameter(String const& name) const {
    auto const found = m_parameters.find(name);
    return found == m_parameters.end() ? String() : found->second;
}

void Uri::setScheme(String const& scheme) {
    if (containsAny(scheme, ":/?#"))
        failComponent("setScheme", "Invalid scheme: ", scheme);
    m_scheme = scheme.owned();
}

void Uri::setAuthority(String const& authority) {
    if (containsAny(authority, "/?#"))
        failComponent("setAuthority", "Invalid authority: ", loggableUri(authority));
    m_authority = authority.owned();
}

void Uri::setPath(String const& path) {
    if (containsAny(path, "?#"))
        failComponent("setPath", "Invalid path: ", path);
    bool const isRelative = !path.empty() && path[0] != '/';
    m_path = {isRelative ? String("/" + path) : path.owned(), std::nullopt};
}

void Uri::setFragment(String const& fragment) {
    m_fragment = {fragment.owned(), std::nullopt};
}

void Uri::setParameter(String const& name, String const& value) {
    m_parameters.insert_or_assign(name.owned(), value.owned());
}

void Uri::delParameter(String const& name) {
    m_parameters.erase(name);
}

String Uri::getQuery() const {
    String query;
    for (auto const& [name, value] : m_parameters) {
        if (!query.empty())
            query.append('&');
        query.append(encode(name), '=', encode(value));
    }
    return query;
}

String Uri::getFullUri() const {
    String const path = m_path.written ? encodePath(*m_path.written, Escapes::keep)
                                       : encodePath(m_path.text, Escapes::encode);
    String const fragment = m_fragment.written ? encodeFragment(*m_fragment.written, Escapes::keep)
                                               : encodeFragment(m_fragment.text, Escapes::encode);
    String full;
    if (!m_scheme.empty())
        full.append(m_scheme, ':');
    full.append("//", m_authority);
    if (!path.empty() && path[0] != '/')
        full.append('/');
    full.append(path.array(), path.length());
    if (!m_parameters.empty())
        full.append('?', getQuery());
    if (!fragment.empty())
        full.append('#', fragment);
    return full;
}

} // namespace quillon::http
