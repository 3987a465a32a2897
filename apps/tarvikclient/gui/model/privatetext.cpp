#include "tarvikclient/gui/model/privatetext.h"

#include "base/ascii.h"
#include "base/ownfile.h"
#include "http/hostport.h"
#include "tarvikclient/client.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace quillon {

namespace {

constexpr std::string_view removed = "***";
constexpr std::string_view anAddress = "<address>";
constexpr std::string_view blanks = " \t";
constexpr std::string_view quotes = "\"'";

/// A key with one of these in it, in whatever letters, has a secret behind it.
constexpr std::string_view secretKeys[] = {"tarvik-id", "ticket", "password",      "passwd",
                                           "cookie",    "login",  "authorization", "token"};

/// ASCII letters in any case.
bool isSame(char a, char b) {
    return ascii::lower(a) == ascii::lower(b);
}

bool startsWith(std::string_view text, std::string_view with) {
    return text.size() >= with.size() && std::equal(with.begin(), with.end(), text.begin(), isSame);
}

bool isWordByte(char byte) {
    return ascii::isAlnum(byte) || byte == '_' || static_cast<unsigned char>(byte) >= 0x80;
}

bool isKeyByte(char byte) {
    return isWordByte(byte) || byte == '-';
}

bool isFileNameByte(char byte) {
    return isKeyByte(byte) || byte == '.';
}

bool isSecretKey(std::string_view key) {
    return std::any_of(std::begin(secretKeys), std::end(secretKeys), [key](std::string_view secret) {
        return std::search(key.begin(), key.end(), secret.begin(), secret.end(), isSame) != key.end();
    });
}

std::size_t orEnd(std::size_t position, std::string_view line) {
    return std::min(position, line.size());
}

/// Where a value in quotes ends, of which the first byte stands at `from`.
std::size_t endOfQuoted(std::string_view line, std::size_t from) {
    char const quote = line[from - 1];
    while (from < line.size() && line[from] != quote)
        from += line[from] == '\\' ? 2 : 1;
    return orEnd(from, line);
}

/// Where the value ends that begins at `from`, behind `separator`.
std::size_t endOfValue(std::string_view line, std::size_t from, char separator) {
    if (separator == '>')
        return orEnd(line.find('<', from), line);
    // What is written for people may have blanks in it.
    return separator == ':' ? line.size() : orEnd(line.find_first_of(" \t;&\"'<>)", from), line);
}

struct Range {
    std::size_t begin, end;
};

/// The value behind a key that ends at `keyEnd`; an empty range where there is none.
Range valueBehind(std::string_view line, std::size_t keyEnd) {
    bool const quotedKey = keyEnd < line.size() && quotes.find(line[keyEnd]) != quotes.npos;
    std::size_t const separator = line.find_first_not_of(blanks, keyEnd + quotedKey);
    if (separator == line.npos || std::string_view("=:>").find(line[separator]) == std::string_view::npos)
        return {keyEnd, keyEnd};
    std::size_t const begin = orEnd(line.find_first_not_of(blanks, separator + 1), line);
    if (begin < line.size() && quotes.find(line[begin]) != quotes.npos)
        return {begin + 1, endOfQuoted(line, begin + 1)};
    return {begin, endOfValue(line, begin, line[separator])};
}

std::string withoutSecrets(std::string_view line) {
    std::string result;
    for (std::size_t at = 0; at < line.size();) {
        std::size_t const from = at;
        while (at < line.size() && isKeyByte(line[at]))
            ++at;
        if (at > from && isSecretKey(line.substr(from, at - from))) {
            Range const value = valueBehind(line, at);
            result += line.substr(from, value.begin - from);
            result += value.end > value.begin ? removed : "";
            at = value.end;
        } else {
            at += at == from;
            result += line.substr(from, at - from);
        }
    }
    return result;
}

/// A piece of text without blanks, in which URLs stand. The user-info goes from the first "://" to the last
/// "@", because a ticket may hold the delimiters that end it.
std::string withoutAuthorities(std::string_view piece) {
    constexpr std::string_view mark = "://";
    std::string result;
    std::size_t at = piece.rfind('@'); // what is behind it has none
    for (std::size_t found; (found = piece.find(mark)) != piece.npos; at = piece.npos) {
        std::size_t const authority = found + mark.size();
        bool const hasUserInfo = at != piece.npos && at >= authority;
        std::size_t const host = hasUserInfo ? at + 1 : authority;
        std::size_t const end = orEnd(piece.find_first_of("/?#\"'<>(),", host), piece);
        result.append(piece.substr(0, authority))
            .append(hasUserInfo ? removed : "")
            .append(hasUserInfo ? "@" : "");
        result.append(end > host ? anAddress : "");
        piece.remove_prefix(end);
    }
    return result.append(piece);
}

std::string withoutAuthority(std::string_view line) {
    std::string result;
    while (!line.empty()) {
        std::size_t const end = orEnd(line.find_first_of(blanks), line);
        result.append(withoutAuthorities(line.substr(0, end))).append(line.substr(end, 1));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return result;
}

bool isAddressByte(char byte) {
    return ascii::hexValue(byte) >= 0 || byte == '.' || byte == ':';
}

bool isAddress(std::string const& text) {
    unsigned char bytes[sizeof(in6_addr)];
    return std::any_of(text.begin(), text.end(), ascii::isDigit) &&
           (inet_pton(AF_INET, text.c_str(), bytes) == 1 || inet_pton(AF_INET6, text.c_str(), bytes) == 1);
}

/// The length of the IP address that the text begins with; 0 where there is none. The client's version reads
/// like one.
std::size_t addressLength(std::string_view text) {
    constexpr std::size_t longest = INET6_ADDRSTRLEN;
    for (std::size_t size = std::min(text.size(), longest); size > 1; --size)
        if (std::string const start(text.substr(0, size)); isAddress(start))
            return start == TarvikClient::version ? 0 : size;
    return 0;
}

/// In a run of address bytes an address begins at the front or behind a colon: "p:10.1.2.3:80.".
std::string withoutAddressesOf(std::string_view run) {
    std::string result;
    while (!run.empty()) {
        std::size_t const address = addressLength(run);
        std::size_t const kept = address ? 0 : std::min(run.find(':'), run.size() - 1) + 1;
        result.append(address ? anAddress : run.substr(0, kept));
        run.remove_prefix(address + kept);
    }
    return result;
}

std::string withoutAddresses(std::string_view line) {
    std::string result;
    for (std::size_t at = 0; at < line.size();) {
        std::size_t const from = at;
        while (at < line.size() && isAddressByte(line[at]))
            ++at;
        // Without two of either there is none.
        std::string_view const run = line.substr(from, at - from);
        if (std::count(run.begin(), run.end(), '.') > 2 || std::count(run.begin(), run.end(), ':') > 1)
            result += withoutAddressesOf(run);
        else
            result += run;
        for (; at < line.size() && !isAddressByte(line[at]); ++at)
            result += line[at];
    }
    return result;
}

std::string withoutHome(std::string_view line, std::string_view home) {
    std::string result;
    for (std::size_t at = 0, found;; at = found + home.size()) {
        found = line.find(home, at);
        result += line.substr(at, found - at);
        if (found == line.npos)
            return result;
        std::size_t const end = found + home.size();
        bool const whole = (found == 0 || !isFileNameByte(line[found - 1])) &&
                           (end == line.size() || !isFileNameByte(line[end]));
        result += whole ? std::string_view("~") : home;
    }
}

/// The length of the one of the names that is a word of its own at the begin of the text; 0 where there is
/// none.
std::size_t nameLength(std::string_view text, std::vector<std::string> const& names) {
    std::size_t longest = 0;
    for (std::string const& name : names)
        if (startsWith(text, name) && (text.size() == name.size() || !isWordByte(text[name.size()])))
            longest = std::max(longest, name.size());
    return longest;
}

std::string withoutNames(std::string_view line, std::vector<std::string> const& names,
                         std::string_view instead) {
    std::string result;
    while (!line.empty()) {
        std::size_t const name = nameLength(line, names);
        std::size_t kept = 0;
        while (!name && kept < line.size() && isWordByte(line[kept]))
            ++kept;
        if (!name && kept == 0)
            kept = 1;
        result += name ? instead : line.substr(0, kept);
        line.remove_prefix(name + kept);
    }
    return result;
}

std::string privateLine(std::string_view line, Person const& person) {
    std::string result = withoutAddresses(withoutAuthority(withoutSecrets(line)));
    for (std::string const& home : person.homes)
        result = withoutHome(result, home);
    return withoutNames(withoutNames(result, person.hosts, anAddress), person.names, "<user>");
}

void addName(Person& person, char const* name) {
    // One letter is no word that anybody could leave out.
    if (name && std::string_view(name).size() > 1 && std::string_view(name) != "root")
        person.names.emplace_back(name);
}

void addHome(Person& person, char const* home) {
    std::string path(home ? home : "");
    path.erase(path.find_last_not_of('/') + 1);
    if (path.starts_with('/'))
        person.homes.push_back(path);
}

std::error_code lastError() {
    return {errno, std::generic_category()};
}

} // namespace

Person Person::current(std::string const& gateway) {
    Person person;
    if (auto const host = http::HostPort::parse(String::copyOf(gateway), 443))
        person.hosts.emplace_back(host->host().view());
    passwd entry{};
    passwd* found = nullptr;
    char buffer[16 * 1024];
    if (getpwuid_r(geteuid(), &entry, buffer, sizeof buffer, &found) == 0 && found) {
        addName(person, found->pw_name);
        addHome(person, found->pw_dir);
    }
    addName(person, std::getenv("USER"));
    addHome(person, std::getenv("HOME"));
    return person;
}

std::string privateText(std::string_view text, Person const& person) {
    std::string result;
    for (std::size_t end; (end = text.find('\n')) != text.npos; text.remove_prefix(end + 1))
        result += privateLine(text.substr(0, end), person) + "\n";
    return result + privateLine(text, person);
}

std::error_code copyPrivately(std::string const& from, std::string const& to, Person const& person) {
    std::error_code ignored; // of a file that is not there yet
    if (std::filesystem::equivalent(from, to, ignored))
        return std::make_error_code(std::errc::file_exists);
    // Whatever has come to stand there, nobody else's text leaves by this way.
    Descriptor const own = openOwnFile(AT_FDCWD, from.c_str(), O_RDONLY);
    if (!own)
        return lastError();
    std::ifstream source("/dev/fd/" + std::to_string(own.number()), std::ios::binary);
    if (!source)
        return lastError();
    std::ofstream destination(to, std::ios::binary | std::ios::trunc);
    for (std::string line; destination && std::getline(source, line);)
        destination << privateLine(line, person) << (source.eof() ? "" : "\n");
    destination.close();
    return destination && !source.bad() ? std::error_code() : lastError();
}

} // namespace quillon
