#include "http/loggableuri.h"

#include "base/splitter.h"

#include <algorithm>

namespace quillon::http {

namespace {

constexpr char hidden[] = "...";

String withoutQueryValues(String const& uri) {
    unsigned const fragment = std::min(uri.find('#'), uri.length());
    unsigned const query = uri.find('?');
    if (query >= fragment)
        return uri;
    String result = uri.range(0, query).clone();
    char separator = '?';
    for (CharSplitter pieces(uri.range(query + 1, fragment - query - 1), '&'); pieces.valid();) {
        String const piece = pieces.next();
        unsigned const equals = piece.find('=');
        result.append(separator, equals == String::npos ? String() : piece.range(0, equals + 1), hidden);
        separator = '&';
    }
    return result.append(uri.range(fragment));
}

// Up to the last "@", wherever the authority ends: a ticket may hold the delimiters that end it.
String withoutUserInfo(String const& uri) {
    unsigned const at = uri.rfind('@');
    if (at == String::npos)
        return uri;
    unsigned const slashes = uri.find("://", 0, at);
    String const scheme = slashes == String::npos ? String() : uri.range(0, slashes + 3);
    return scheme + hidden + uri.range(at);
}

} // namespace

String loggableUri(String const& uri) {
    return withoutUserInfo(withoutQueryValues(uri));
}

} // namespace quillon::http
