#include "http/hostport.h"

#include "base/ascii.h"
#include "base/stringconversion.h"
#include "http/idn.h"

#include <arpa/inet.h>

#include <algorithm>

namespace quillon::http {

namespace {

constexpr unsigned longestHost = 253;
constexpr unsigned longestLabel = 63;

bool isAscii(String const& text) {
    return std::all_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x80; });
}

bool isDigits(String const& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), ascii::isDigit);
}

bool isLabelCharacter(char c) {
    return ascii::isAlnum(c) || c == '-' || c == '_';
}

/// What stands between the dots; each is looked at until `wanted` says no.
template <class Predicate>
bool allLabels(String const& name, Predicate wanted) {
    String rest = name;
    for (unsigned dot = rest.find('.'); dot != String::npos; dot = rest.find('.')) {
        if (!wanted(rest.range(0, dot)))
            return false;
        rest = rest.range(dot + 1);
    }
    return wanted(rest);
}

bool isName(String const& name) {
    return name.length() <= longestHost && allLabels(name, [](String const& label) {
               return !label.empty() && label.length() <= longestLabel &&
                      std::all_of(label.begin(), label.end(), isLabelCharacter);
           });
}

/// Whether libraries may read the name as a number, and so as an address: its last label decides.
bool isNumber(String const& name) {
    String const last = name.find('.') == String::npos ? name : name.rright('.');
    return isDigits(last) || last.starts("0x");
}

bool isIpv4(String const& name) {
    in_addr address{};
    return inet_pton(AF_INET, String(name).str(), &address) == 1;
}

/// The address in its one shortest form and in brackets; empty for none.
String ipv6Of(String const& text) {
    in6_addr address{};
    char shortest[INET6_ADDRSTRLEN];
    if (inet_pton(AF_INET6, String(text).str(), &address) != 1 ||
        !inet_ntop(AF_INET6, &address, shortest, sizeof shortest))
        return String();
    String inBrackets;
    return inBrackets.append("[", shortest, "]");
}

String asciiOf(String const& host) {
    String const name = isAscii(host) ? host : native::idnToAscii(host);
    return (name.ends(".") ? name.range(0, name.length() - 1) : name).lower();
}

std::optional<unsigned short> portOf(String const& text, unsigned short defaultPort) {
    if (text.empty())
        return defaultPort;
    String const digits = text.range(1);
    if (text[0] != ':' || !isDigits(digits) || digits.length() > 5)
        return std::nullopt;
    std::uint32_t const number = toUint32(digits);
    if (number == 0 || number > 0xFFFF)
        return std::nullopt;
    return static_cast<unsigned short>(number);
}

/// What decides which script a code point is taken for: enough to tell names that mix them.
bool isLatin(char32_t c) {
    return (c < 0x80 && !ascii::isDigit(static_cast<char>(c)) && c != '-') || (c >= 0xC0 && c < 0x250);
}
bool isFromTheRight(char32_t c) {
    return (c >= 0x590 && c < 0x900) || (c >= 0xFB1D && c < 0xFF00) || (c >= 0x10800 && c < 0x11000) ||
           (c >= 0x1E800 && c < 0x1F000);
}

/// Reads one character of valid UTF-8, which is what the library gives, and moves behind it.
char32_t nextCharacter(char const*& position) {
    auto const first = static_cast<unsigned char>(*position++);
    int const more = first < 0xC0 ? 0 : first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
    char32_t value = more == 0 ? first : first & (0x3F >> more);
    for (int i = 0; i < more && *position != '\0'; ++i)
        value = value << 6 | (static_cast<unsigned char>(*position++) & 0x3F);
    return value;
}

/// Letters of other scripts that are drawn like Latin ones, or nearly so.
bool looksLatin(char32_t c) {
    static constexpr std::u32string_view letters = U"авгеёкмнопрстуфхьѕіїјԁһӏԛԝүѵґѓќўәөαβγεηικνορστυχωϲϳ";
    return letters.find(c) != letters.npos;
}

/// A label that mixes scripts, is read from the right or could be drawn all in Latin letters is one that may
/// be taken for another.
bool canBeShown(String const& label) {
    bool latin = false, other = false, distinct = false;
    String const text = label.clone(); // ends in a NUL once str() is asked
    for (char const* position = text.str(); *position != '\0';) {
        char32_t const c = nextCharacter(position);
        if (isFromTheRight(c))
            return false;
        latin = latin || isLatin(c);
        other = other || (c >= 0x80 && !isLatin(c));
        distinct = distinct || (c >= 0x80 && !isLatin(c) && !looksLatin(c));
    }
    return !(latin && other) && (!other || distinct);
}

} // namespace

std::optional<HostPort> HostPort::parse(String const& text, unsigned short defaultPort) {
    bool const inBrackets = text.starts("[");
    unsigned const end = std::min(inBrackets ? text.find(']') : text.find(':'), text.length());
    String const written = text.range(inBrackets ? 1 : 0, inBrackets ? end - 1 : end);
    auto const port = portOf(text.range(inBrackets ? end + 1 : end), defaultPort);
    // A NUL would end the name for a C library, and a port or an end bracket that is not there parts nothing.
    if (!port || text.find('\0') != String::npos || (inBrackets && end == text.length()))
        return std::nullopt;
    String const host = inBrackets ? ipv6Of(written) : asciiOf(written);
    bool const isAddress = inBrackets || isIpv4(host);
    // An address with a dot behind is looked up as a name.
    if (isAddress && written.ends("."))
        return std::nullopt;
    if (host.empty() || (!inBrackets && (!isName(host) || (isNumber(host) && !isAddress))))
        return std::nullopt;
    return HostPort(host, *port, isAddress);
}

String HostPort::toString(unsigned short defaultPort) const {
    return m_port == defaultPort ? m_host : m_host + ":" + quillon::toString(m_port);
}

String HostPort::internationalName() const {
    String const name = native::idnToUnicode(m_host);
    // A name that does not lead back here is not this host's.
    bool const genuine = !name.empty() && name != m_host && native::idnToAscii(name) == m_host;
    return genuine && allLabels(name, canBeShown) ? name : String();
}

} // namespace quillon::http
