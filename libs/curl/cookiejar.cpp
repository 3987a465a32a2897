#include "curl/cookiejar.h"

#include "base/failure.h"
#include "base/stringconversion.h"
#include "base/strings.h"
#include "curl/cookieline.h"
#include "curl/ecurl.h"

#include <curl/curl.h>

#include <algorithm>
#include <ctime>
#include <memory>
#include <set>
#include <vector>

namespace quillon {

namespace {

// libcurl sends no more at once.
constexpr unsigned maxSent = 150;

std::set<String> setOf(Strings const& lines) {
    return {lines.begin(), lines.end()};
}

std::set<String> identitiesOf(Strings const& lines) {
    std::set<String> result;
    for (String const& line : lines)
        result.insert(CookieLine(line).getIdentity());
    return result;
}

Strings listOf(CURL* handle) {
    Strings lines;
    curl_slist* list = nullptr;
    if (curl_easy_getinfo(handle, CURLINFO_COOKIELIST, &list) != CURLE_OK)
        return lines;
    std::unique_ptr<curl_slist, void (*)(curl_slist*)> const owner(list, &curl_slist_free_all);
    for (; list; list = list->next)
        lines.add(String::copyOf(list->data));
    return lines;
}

bool areEqual(Strings const& a, Strings const& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

} // namespace

CookieJar::CookieJar(CURL* handle) : m_handle(handle) {
    curl_easy_setopt(m_handle, CURLOPT_COOKIEFILE, "");
}

void CookieJar::add(String const& line) {
    String const copy(line);
    curl_easy_setopt(m_handle, CURLOPT_COOKIELIST, copy.str());
}

void CookieJar::addAll(Strings const& lines) {
    for (String const& line : lines)
        add(CookieLine(line).getLine());
}

void CookieJar::set(http::SetCookie const& cookie) {
    add("Set-Cookie: " + cookie.toString());
    if (cookie.getDomain().empty()) {
        m_withoutDomain[cookie.getName()] = cookie;
    } else if (!holds(cookie)) {
        fail<ECurl>("CookieJar", "set",
                    "cookie " + cookie.getName() + " of " + toString(cookie.getValue().length()) +
                        " bytes cannot be sent: too long, or bytes that no cookie may hold");
    }
}

bool CookieJar::holds(http::SetCookie const& cookie) const {
    String const domain = cookie.getDomain().lower();
    Strings const lines = listOf(m_handle);
    return std::any_of(lines.begin(), lines.end(), [&](String const& text) {
        CookieLine const line(text);
        return line.getName() == cookie.getName() && line.getValue() == cookie.getValue() &&
               line.getDomain() == (domain.starts(".") ? domain.range(1) : domain);
    });
}

void CookieJar::copyFrom(CookieJar const& other) {
    addAll(other.lines());
    for (auto const& [name, cookie] : other.m_withoutDomain)
        set(cookie);
}

Strings CookieJar::lines() const {
    Strings lines;
    auto const now = static_cast<std::uint64_t>(std::time(nullptr));
    for (String const& line : listOf(m_handle))
        // libcurl forgets an expired cookie only when it next looks for one to send.
        if (!CookieLine(line).isExpired(now))
            lines.add(line);
    return lines;
}

void CookieJar::merge(Strings const& before, Strings const& after) {
    if (areEqual(before, after))
        return;
    Strings const held = lines();
    if (areEqual(before, held) && after.size() <= maxCookies) {
        // Nothing else has happened. The copy is what libcurl would have made of this jar, its order too.
        clear();
        restore(after);
        return;
    }
    std::set<String> const oldLines = setOf(before);
    std::set<String> const heldLines = setOf(held);
    std::set<String> const kept = identitiesOf(after);
    for (String const& line : before)
        if (CookieLine const cookie(line); !kept.contains(cookie.getIdentity()) && heldLines.contains(line))
            add(cookie.getExpired());
    unsigned count = held.size();
    for (String const& line : after) {
        if (oldLines.contains(line))
            continue;
        if (++count > maxCookies) {
            log(ERROR, "CookieJar", "merge", "too many cookies");
            return;
        }
        add(CookieLine(line).getLine());
    }
}

String CookieJar::headerFor(RequestUrl const& url) const {
    CookieTarget const target(url);
    std::vector<CookieLine> chosen;
    for (String const& line : lines())
        if (CookieLine const cookie(line); cookie.matches(target) && chosen.size() < maxSent)
            chosen.push_back(cookie);
    // libcurl lists the oldest first and sends the youngest of equals first.
    std::reverse(chosen.begin(), chosen.end());
    std::stable_sort(chosen.begin(), chosen.end(),
                     [](CookieLine const& a, CookieLine const& b) { return a.precedes(b); });
    String header;
    auto const write = [&](String const& pair) { header.append(header.empty() ? "" : "; ", pair); };
    for (CookieLine const& cookie : chosen)
        write(cookie.getPair());
    for (auto const& [name, cookie] : m_withoutDomain)
        if (target.isAddress() && (target.isSecure || !cookie.isSecure()))
            write(name + "=" + cookie.getValue());
    return header;
}

void CookieJar::clear() {
    curl_easy_setopt(m_handle, CURLOPT_COOKIELIST, "ALL");
}

void CookieJar::restore(Strings const& taken) {
    addAll(taken);
    for (auto const& [name, cookie] : std::map(m_withoutDomain))
        set(cookie);
}

} // namespace quillon
