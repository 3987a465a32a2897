#include "curl/requesturl.h"

#include "base/ascii.h"
#include "http/uri.h"

#include <curl/curl.h>

#include <algorithm>

namespace quillon {

namespace {

// As those see it who look at a URL without libcurl: in what stands before the port.
String hostOf(String const& authority) {
    String const host = authority.rright('@');
    return (host.starts("[") ? host.left(']') + "]" : host.left(':')).lower();
}

bool isAscii(String const& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<signed char>(c) > 0; });
}

} // namespace

void RequestUrl::Cleanup::operator()(Curl_URL* handle) const {
    curl_url_cleanup(handle);
}

RequestUrl::RequestUrl(String const& url) : m_handle(curl_url()), m_error(read(url)) {}

int RequestUrl::read(String const& url) {
    if (!m_handle)
        return CURLE_OUT_OF_MEMORY;
    // libcurl would read a text with a NUL up to there.
    if (url.find('\0') != String::npos)
        return CURLE_URL_MALFORMAT;
    // str() may move a string's bytes, which must not happen to a string that other threads use too.
    String const text(url);
    if (curl_url_set(m_handle.get(), CURLUPART_URL, text.str(), CURLU_NON_SUPPORT_SCHEME) != CURLUE_OK)
        return CURLE_URL_MALFORMAT;
    String const scheme = getPart(CURLUPART_SCHEME);
    m_isHttps = scheme == "https";
    if (!m_isHttps && scheme != "http")
        return CURLE_UNSUPPORTED_PROTOCOL;
    String const host = getPart(CURLUPART_HOST).lower();
    // The fragment is not sent; a line break in it would make this throw.
    String const seen = hostOf(http::Uri::parse(text.left('#'), false).getAuthority());
    if (host.empty() || host != seen || !isAscii(host))
        return CURLE_URL_MALFORMAT;
    m_host = host.starts("[") ? host.range(1).left(']') : host;
    m_path = getPart(CURLUPART_PATH);
    return CURLE_OK;
}

String RequestUrl::getPart(int part) const {
    char* text = nullptr;
    if (curl_url_get(m_handle.get(), static_cast<CURLUPart>(part), &text, 0) != CURLUE_OK)
        return String();
    std::unique_ptr<char, void (*)(void*)> const owner(text, &curl_free);
    return String::copyOf(text);
}

} // namespace quillon
