#include "curl/longhead.h"

#include <curl/curl.h>

namespace quillon {

namespace {

constexpr long uploadBufferSize = 2 << 20; // the most that libcurl accepts
constexpr long defaultUploadBufferSize = 64 << 10;

} // namespace

bool LongHead::isNeeded(String const& url, unsigned others, CookieJar const& cookies) {
    unsigned long length = url.length() + static_cast<unsigned long>(others);
    for (String const& line : cookies.lines())
        length += line.length();
    return length > threshold;
}

LongHead::LongHead(CURL* handle, String const& url, CookieJar& cookies, http::ResponseHeader const& reply)
    : m_handle(handle), m_cookies(cookies), m_reply(reply), m_taken(cookies.lines()) {
    String const header = m_cookies.headerFor(url);
    m_cookies.clear();
    curl_easy_setopt(m_handle, CURLOPT_COOKIE, header.empty() ? nullptr : header.str());
    curl_easy_setopt(m_handle, CURLOPT_UPLOAD_BUFFERSIZE, uploadBufferSize);
    curl_easy_setopt(m_handle, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
}

LongHead::~LongHead() {
    curl_easy_setopt(m_handle, CURLOPT_COOKIE, nullptr);
    curl_easy_setopt(m_handle, CURLOPT_UPLOAD_BUFFERSIZE, defaultUploadBufferSize);
    curl_easy_setopt(m_handle, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_NONE));
    try {
        m_cookies.restore(m_taken, m_reply.getSetCookies());
    } catch (...) {
        // Without memory the handle goes on without its cookies.
    }
}

} // namespace quillon
