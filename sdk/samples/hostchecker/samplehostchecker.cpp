// A host checker that answers a small rule language about this machine.
//
// A request is rules with ";" between them, each NAME=TEST; the answer is the names of the rules that hold,
// in the order of the request, with ";" between them. Blanks around a rule, a name or a test do not count.
//
//     os:NAME     the operating system's name is NAME, as "uname -s" prints it (Linux, Darwin)
//     arch:NAME   the machine's architecture is NAME, as "uname -m" prints it
//     file:PATH   PATH is a regular file, or a link to one
//     dir:PATH    PATH is a directory, or a link to one
//     env:NAME    the environment variable NAME is set and not empty
//     !TEST       TEST does not hold
//
// For example "linux=os:Linux; no core=!file:/core". A rule that cannot be read never holds, negated or not:
// a rule of a later version of the language must not pass by accident.
//
// Its calls are written to sample-hostchecker.log in the directory that InitHostCheckerDll is given.

#include <sys/utsname.h>
#include <tarvik/module.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>

namespace {

std::string theDirectory;
std::string theAnswer; // what GetValidRules returned last: the client reads it until the next call

void log(std::string const& line) {
    std::ofstream file(theDirectory + "sample-hostchecker.log", std::ios::app);
    file << line << "\n";
}

std::string trimmed(std::string const& text) {
    auto const first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

/// Whether a test without "!" holds; nothing when it cannot be read.
std::optional<bool> plainTestHolds(std::string const& test) {
    auto const colon = test.find(':');
    if (colon == std::string::npos || colon + 1 == test.size())
        return std::nullopt;
    std::string const kind = test.substr(0, colon);
    std::string const argument = test.substr(colon + 1);
    utsname system{};
    uname(&system);
    std::error_code error;
    if (kind == "os")
        return argument == system.sysname;
    if (kind == "arch")
        return argument == system.machine;
    if (kind == "file")
        return std::filesystem::is_regular_file(argument, error);
    if (kind == "dir")
        return std::filesystem::is_directory(argument, error);
    if (kind == "env") {
        char const* value = std::getenv(argument.c_str());
        return value && *value;
    }
    return std::nullopt;
}

bool testHolds(std::string const& test) {
    bool const negated = test.rfind('!', 0) == 0;
    std::optional<bool> const holds = plainTestHolds(negated ? trimmed(test.substr(1)) : test);
    return holds && *holds != negated;
}

std::string validRules(std::string const& request) {
    std::string names;
    std::istringstream rules(request);
    for (std::string rule; std::getline(rules, rule, ';');) {
        auto const equals = rule.find('=');
        if (equals == std::string::npos)
            continue;
        std::string const name = trimmed(rule.substr(0, equals));
        if (!name.empty() && testHolds(trimmed(rule.substr(equals + 1))))
            names += (names.empty() ? "" : ";") + name;
    }
    return names;
}

} // namespace

int InitHostCheckerDll(char const*, char const*, char const* directory, char const* hostname,
                       char const* language) noexcept {
    theDirectory = directory;
    log(std::string(__func__) + " " + directory + " " + hostname + " " + language);
    return 0;
}

void CloseHostCheckerDll() noexcept {
    log(__func__);
    theAnswer.clear();
}

char* GetValidRules(char const* request) noexcept {
    theAnswer = validRules(request);
    log(std::string(__func__) + " " + request + " -> " + theAnswer);
    return theAnswer.data();
}
