#include "curl/longhead.h"

#include <curl/curl.h>

namespace quillon {

namespace {

constexpr long uploadBufferSize = 2 << 20; // the most that libcurl accepts
constexpr long defaultUploadBufferSize = 64 << 10;

} // namespace

bool LongHead::isNeeded(unsigned urlLength, unsigned others, CookieJar const& cookies) {
    unsigned long length = static_cast<unsigned long>(urlLength) + others;
    for (String const& line : cookies.lines())
        length += line.length();
    return length > threshold;
}

LongHead::LongHead(CURL* handle, RequestUrl const& url, CookieJar& cookies)
    : m_handle(handle), m_url(url), m_cookies(cookies) {
    takeCookies();
    curl_easy_setopt(m_handle, CURLOPT_UPLOAD_BUFFERSIZE, uploadBufferSize);
    curl_easy_setopt(m_handle, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
}

LongHead::~LongHead() {
    curl_easy_setopt(m_handle, CURLOPT_COOKIE, nullptr);
    curl_easy_setopt(m_handle, CURLOPT_UPLOAD_BUFFERSIZE, defaultUploadBufferSize);
    curl_easy_setopt(m_handle, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_NONE));
    try {
        replyBegins();
    } catch (...) {
        // Without memory the handle goes on without its cookies.
    }
}

void LongHead::takeCookies() {
    m_taken = m_cookies.lines();
    String const header = m_cookies.headerFor(m_url);
    curl_easy_setopt(m_handle, CURLOPT_COOKIE, header.empty() ? nullptr : header.str());
    m_cookies.clear();
    m_isTaken = true;
}

void LongHead::replyBegins() {
    if (!m_isTaken)
        return;
    m_isTaken = false;
    m_cookies.restore(m_taken);
}

void LongHead::replyEnds() {
    if (!m_isTaken)
        takeCookies();
}

} // namespace quillon
