#include "cookiecomparison.h"

#include "base/ascii.h"

#include <curl/curl.h>

#include <algorithm>
#include <charconv>
#include <ctime>

namespace quillon::test {

namespace {

std::size_t discard(char*, std::size_t size, std::size_t count, void*) {
    return size * count;
}

// The expiry, the fifth field, parted from the rest. The two requests may lie in different seconds. The
// session keeps the paths "TRUE" and "FALSE" in small letters.
struct Held {
    explicit Held(std::string line) {
        std::size_t start = 0;
        for (int i = 0; i < 4; ++i) {
            if (i == 2 && (line.compare(start, 5, "TRUE\t") == 0 || line.compare(start, 6, "FALSE\t") == 0))
                std::transform(&line[start], &line[line.find('\t', start)], &line[start], ascii::lower);
            start = line.find('\t', start) + 1;
        }
        std::from_chars(line.data() + start, line.data() + line.size(), expiry);
        line.erase(start, line.find('\t', start) - start);
        rest = std::move(line);
    }
    bool operator==(Held const& other) const {
        return rest == other.rest && std::abs(expiry - other.expiry) <= 2;
    }

    std::string rest;
    long long expiry = 0;
};

Proxy proxyAt(std::string const& authority) {
    Proxy proxy(Proxy::HTTP_CONNECT, String::copyOf(authority));
    proxy.getCredentials() = Credentials("name", "secret", "");
    return proxy;
}

std::string joined(std::vector<std::string> const& lines) {
    std::string text;
    for (std::string const& line : lines)
        text += "    " + line + "\n";
    return text;
}

} // namespace

void CookieComparison::Cleanup::operator()(CURL* handle) const {
    curl_easy_cleanup(handle);
}

CookieComparison::CookieComparison()
    : m_server([this](Request const& request) { return answer(request); }, Tls::off),
      m_session(proxyAt(m_server.authority())),
      m_plain(curl_easy_init()) {
    // Switches the engine on. A CURLOPT_COOKIEFILE would leak at each reset.
    curl_easy_setopt(m_plain.get(), CURLOPT_COOKIELIST, "Set-Cookie: none=; Max-Age=0");
}

std::string CookieComparison::request(std::string const& url, std::vector<std::string> const& cookies) {
    m_cookies.clear();
    for (std::string const& cookie : cookies)
        m_cookies.push_back("Set-Cookie: " + cookie);
    std::string const expected = requestPlainly(url);
    std::string const sent = requestBySession(url);
    if (sent != expected)
        return "sent \"" + sent + "\", libcurl \"" + expected + "\"";
    std::vector<std::string> held;
    for (String const& line : m_session.listCookies())
        held.emplace_back(line.view());
    std::vector<std::string> const heldAlone = heldPlainly();
    if (std::vector<Held>(held.begin(), held.end()) == std::vector<Held>(heldAlone.begin(), heldAlone.end()))
        return {};
    return "held\n" + joined(held) + "  libcurl\n" + joined(heldAlone);
}

Reply CookieComparison::answer(Request const& request) const {
    if (request.path().ends_with("/407") && !request.hasHeader("Proxy-Authorization")) {
        HeaderLines headers = m_cookies;
        headers.push_back("Proxy-Authenticate: Basic realm=\"p\"");
        return status(407, "", headers);
    }
    return ok("", m_cookies);
}

std::string CookieComparison::requestPlainly(std::string const& url) {
    curl_easy_reset(m_plain.get()); // forgets what the proxy asked for, and no cookie
    curl_easy_setopt(m_plain.get(), CURLOPT_PROXY, m_server.authority().c_str());
    curl_easy_setopt(m_plain.get(), CURLOPT_PROXYAUTH, static_cast<long>(CURLAUTH_ANY));
    curl_easy_setopt(m_plain.get(), CURLOPT_PROXYUSERPWD, "name:secret");
    curl_easy_setopt(m_plain.get(), CURLOPT_WRITEFUNCTION, &discard);
    curl_easy_setopt(m_plain.get(), CURLOPT_URL, url.c_str());
    std::size_t const before = m_server.requestCount();
    CURLcode const result = curl_easy_perform(m_plain.get());
    return m_server.requestCount() > before ? m_server.lastRequest().header("Cookie")
                                            : "no request, code " + std::to_string(result);
}

std::string CookieComparison::requestBySession(std::string const& url) {
    std::size_t const before = m_server.requestCount();
    Memory body;
    RequestInfo info;
    m_session.request(String::copyOf(url), body, info);
    return m_server.requestCount() > before ? m_server.lastRequest().header("Cookie")
                                            : "no request, code " + std::to_string(info.getCode());
}

std::vector<std::string> CookieComparison::heldPlainly() const {
    curl_slist* list = nullptr;
    curl_easy_getinfo(m_plain.get(), CURLINFO_COOKIELIST, &list);
    std::unique_ptr<curl_slist, void (*)(curl_slist*)> const owner(list, &curl_slist_free_all);
    std::vector<std::string> lines;
    for (; list; list = list->next)
        // An expired cookie is listed until libcurl next looks for one to send.
        if (Held const held(list->data); held.expiry == 0 || held.expiry > std::time(nullptr))
            lines.emplace_back(list->data);
    return lines;
}

} // namespace quillon::test
namespace quillon::test {

namespace {

constexpr char const* hosts[] = {
    "gate.example",  "www.gate.example", "GATE.Example", "a.www.gate.example", "other.example",
    "gateexample",   "localhost",        "127.0.0.1",    "127.0.0.2",          "[::1]",
    "gate.example.", "x.co.uk"};
constexpr char const* paths[] = {"/", "/a", "/a/", "/a/b", "/A", "/ab", "/a/b/c.html", "/b", "/a%62", "/407"};
constexpr char const* names[] = {
    "a",         "a", "b",   "B",     "A",  "id", "__Host-a", "__host-a", "__Secure-a", "__SECURE-",
    "Tarvik-Id", "",  "a b", "\"q\"", "$x", "#c", "x\ty",     "c\x01",    "\xc3\xa9",   " pad "};
constexpr char const* values[] = {"",    "1",       "2",    "3",     "\"quoted\"", "\"half", "a b", " pad ",
                                  "v=w", "tab\tin", "\x7f", "\xff!", "a,b",        "TRUE",   "#",   "a\x01"};
// No empty path: what CookieLine makes of it is sent to the same hosts, perhaps in another order.
constexpr char attributes[] =
    "path=/|path=/|Path=/a|path=/a/|path=/A|path=a|path=b|path=/a/|path=\"/a\"|path=TRUE|path=FALSE|"
    "path=/a b|path=/a/b/c|path = /a |path=/TRUE|path=\"a\"|path=\"|path=//|path=/a\tb|path=/b/|"
    "domain=gate.example|domain=.gate.example|Domain=GATE.example|domain=www.gate.example|"
    "domain=example|domain=.example|domain=|domain=127.0.0.1|domain=.0.0.1|domain=localhost|"
    "domain=::1|domain=[::1]|domain=gate.example.|domain=co.uk|domain=x.co.uk|"
    "domain=\"gate.example\"|domain=..gate.example|domain=gateexample|domain|secure|Secure|secure=x|"
    "HttpOnly|httponly|max-age=0|max-age=-1|max-age=1000|Max-Age=\"500\"|max-age=x|max-age=|"
    "max-age=99999999999999999999|max-age=-99999999999999999999|"
    "expires=Thu, 01 Jan 1970 00:00:00 GMT|expires=Thu, 01 Jan 2065 00:00:00 GMT|"
    "expires=\"Wed, 01-Jan-2064 00:00:00 GMT\"|expires=junk|expires=|"
    "expires=Mon, 01 Jan 0001 00:00:00 GMT|version=1|SameSite=Lax|=||x=y=z";

// Beyond LongHead::threshold; twice that is below what makes libcurl fail.
std::string const longText(3100, 'q');

constexpr auto attributeCount = 1 + std::count(std::begin(attributes), std::end(attributes), '|');

std::string part(std::string_view texts, unsigned number) {
    for (; number > 0; --number)
        texts.remove_prefix(texts.find('|') + 1);
    return std::string(texts.substr(0, texts.find('|')));
}

/// Takes numbers off the front of bytes; zeros when they have ended.
class Choices {
public:
    explicit Choices(std::string_view bytes) : m_bytes(bytes) {}

    unsigned below(std::size_t count) {
        unsigned const byte = m_bytes.empty() ? 0 : static_cast<unsigned char>(m_bytes.front());
        m_bytes.remove_prefix(m_bytes.empty() ? 0 : 1);
        return byte % static_cast<unsigned>(count);
    }
    template <std::size_t count>
    char const* of(char const* const (&texts)[count]) {
        return texts[below(count)];
    }
    bool empty() const { return m_bytes.empty(); }

private:
    std::string_view m_bytes;
};

std::string makeUrl(Choices& choices) {
    std::string url = std::string("http://") + choices.of(hosts);
    if (choices.below(4) == 0)
        url += ":8080";
    url += choices.of(paths);
    if (choices.below(2) == 0)
        url += "?" + longText;
    return url;
}

std::string makeCookie(Choices& choices) {
    std::string cookie = std::string(choices.of(names)) + "=" + choices.of(values);
    for (unsigned count = choices.below(4); count > 0; --count)
        cookie +=
            std::string(choices.below(4) ? "; " : ";") + part(attributes, choices.below(attributeCount));
    return cookie;
}

} // namespace

std::string compareCookies(std::string_view bytes) {
    CookieComparison comparison;
    Choices choices(bytes);
    std::string story;
    if (choices.below(2) == 0) {
        std::string const ticket = "ticket=" + longText + "; domain=gate.example";
        if (std::string const difference = comparison.request("http://gate.example/", {ticket});
            !difference.empty())
            return difference;
        story = "(long ticket)\n";
    }
    while (!choices.empty()) {
        std::string const url = makeUrl(choices);
        std::vector<std::string> cookies;
        for (unsigned count = choices.below(4); count > 0; --count)
            cookies.push_back(makeCookie(choices));
        story += url.substr(0, url.find("qq")) + "\n" + joined(cookies);
        if (std::string const difference = comparison.request(url, cookies); !difference.empty())
            return story + "  " + difference;
    }
    return {};
}

} // namespace quillon::test
