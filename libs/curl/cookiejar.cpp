#include "curl/cookiejar.h"

#include "curl/cookieline.h"

#include "base/log.h"

#include <curl/curl.h>

#include <algorithm>
#include <ctime>
#include <memory>
#include <set>
#include <vector>

namespace quillon {

namespace {

std::set<String> setOf(Strings const& lines) {
    return {lines.begin(), lines.end()};
}

template <class Get>
std::set<String> setOf(Strings const& lines, Get get) {
    std::set<String> result;
    for (String const& line : lines)
        result.insert(get(CookieLine(line)));
    return result;
}

String nameOf(CookieLine const& cookie) {
    return cookie.getName();
}
String identityOf(CookieLine const& cookie) {
    return cookie.getIdentity();
}

} // namespace

CookieJar::CookieJar(CURL* handle) : m_handle(handle) {
    curl_easy_setopt(m_handle, CURLOPT_COOKIEFILE, "");
}

void CookieJar::add(String const& line) {
    String const copy(line);
    curl_easy_setopt(m_handle, CURLOPT_COOKIELIST, copy.str());
}

void CookieJar::set(http::SetCookie const& cookie) {
    if (cookie.getDomain().empty())
        m_withoutDomain[cookie.getName()] = cookie;
    add("Set-Cookie: " + cookie.toString());
}

void CookieJar::copyFrom(CookieJar const& other) {
    for (String const& line : other.lines())
        add(line);
    for (auto const& [name, cookie] : other.m_withoutDomain)
        set(cookie);
}

Strings CookieJar::lines() const {
    Strings lines;
    curl_slist* list = nullptr;
    if (curl_easy_getinfo(m_handle, CURLINFO_COOKIELIST, &list) != CURLE_OK)
        return lines;
    std::unique_ptr<curl_slist, void (*)(curl_slist*)> const owner(list, &curl_slist_free_all);
    auto const now = static_cast<std::uint64_t>(std::time(nullptr));
    for (; list; list = list->next) {
        String const line = String::copyOf(list->data);
        // libcurl forgets an expired cookie only when it next looks for one to send.
        if (!CookieLine(line).isExpired(now))
            lines.add(line);
    }
    return lines;
}

void CookieJar::merge(Strings const& before, Strings const& after) {
    std::set<String> const oldLines = setOf(before);
    std::set<String> const newLines = setOf(after);
    if (oldLines == newLines)
        return;
    Strings const held = lines();
    std::set<String> const heldLines = setOf(held);
    std::set<String> const kept = setOf(after, identityOf);
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
        add(line);
    }
}

String CookieJar::headerFor(String const& url) const {
    CookieTarget const target(url);
    std::vector<CookieLine> chosen;
    for (String const& line : lines())
        if (CookieLine const cookie(line); cookie.matches(target))
            chosen.push_back(cookie);
    // Servers see the cookie of the longest path first.
    std::stable_sort(chosen.begin(), chosen.end(), [](CookieLine const& a, CookieLine const& b) {
        return a.getPath().length() > b.getPath().length();
    });
    String header;
    auto const write = [&](String const& pair) { header.append(header.empty() ? "" : "; ", pair); };
    for (CookieLine const& cookie : chosen)
        write(cookie.getPair());
    for (auto const& [name, cookie] : m_withoutDomain)
        if (target.isSecure || !cookie.isSecure())
            write(name + "=" + cookie.getValue());
    return header;
}

void CookieJar::clear() {
    curl_easy_setopt(m_handle, CURLOPT_COOKIELIST, "ALL");
}

void CookieJar::restore(Strings const& taken, Strings const& setCookies) {
    Strings const fresh = lines();
    std::set<String> const freshIdentities = setOf(fresh, identityOf);
    // A cookie that the reply removes is in no list: it is one that the reply names and that is not there
    // now.
    std::set<String> removed;
    for (String const& text : setCookies)
        removed.insert(text.left(';').left('=').trim());
    for (String const& name : setOf(fresh, nameOf))
        removed.erase(name);
    for (String const& line : taken) {
        CookieLine const cookie(line);
        if (!freshIdentities.contains(cookie.getIdentity()) && !removed.contains(cookie.getName()))
            add(line);
    }
    for (auto const& [name, cookie] : std::map(m_withoutDomain))
        set(cookie);
}

} // namespace quillon
