#include "devgateway/options.h"

#include <getopt.h>

#include <charconv>
#include <cstring>

namespace devgateway {

namespace {

enum Option {
    Help = 1,
    Port,
    Host,
    PublicName,
    Plugin,
    Hostchecker,
    PollScript,
    HostcheckRounds,
    HostcheckTimer,
    CertificateFile,
    Delay,
    FaultOption
};

constexpr option optionTable[] = {
    {"help", no_argument, nullptr, Help},
    {"port", required_argument, nullptr, Port},
    {"host", required_argument, nullptr, Host},
    {"public-name", required_argument, nullptr, PublicName},
    {"plugin", required_argument, nullptr, Plugin},
    {"hostchecker", required_argument, nullptr, Hostchecker},
    {"poll-script", required_argument, nullptr, PollScript},
    {"hostcheck-rounds", required_argument, nullptr, HostcheckRounds},
    {"hostcheck-timer", required_argument, nullptr, HostcheckTimer},
    {"certificate", required_argument, nullptr, CertificateFile},
    {"delay", required_argument, nullptr, Delay},
    {"fault", required_argument, nullptr, FaultOption},
    {nullptr, 0, nullptr, 0},
};

int number(char const* optionName, char const* text, int highest) {
    int value = 0;
    char const* end = text + std::strlen(text);
    auto const [stop, error] = std::from_chars(text, end, value);
    if (error != std::errc() || stop != end || value < 0 || value > highest)
        throw UsageError(std::string(optionName) + ": not a number from 0 to " + std::to_string(highest) +
                         ": " + text);
    return value;
}

/// The name goes into URLs and HTML as it is, so it may hold only what a host and a port are made of.
std::string publicName(char const* text) {
    constexpr char allowed[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-.:[]";
    if (*text == '\0' || text[std::strspn(text, allowed)] != '\0')
        throw UsageError(std::string("--public-name: not NAME or NAME:PORT: ") + text);
    return text;
}

Fault fault(char const* text) {
    std::optional<Fault> const parsed = parseFault(text);
    if (!parsed)
        throw UsageError(std::string("--fault: unknown fault: ") + text);
    return *parsed;
}

void apply(Options& options, int which, char const* value) {
    switch (which) {
    case Help:
        options.help = true;
        break;
    case Port:
        options.port = number("--port", value, 65535);
        break;
    case Host:
        options.host = value;
        break;
    case PublicName:
        options.publicName = publicName(value);
        break;
    case Plugin:
        options.plugin = value;
        break;
    case Hostchecker:
        options.hostchecker = value;
        break;
    case PollScript:
        options.pollScriptFile = value;
        break;
    case HostcheckRounds:
        options.hostcheckRounds = static_cast<unsigned>(number("--hostcheck-rounds", value, 1'000'000));
        break;
    case HostcheckTimer:
        options.hostcheckTimer = std::chrono::seconds(number("--hostcheck-timer", value, 86'400));
        break;
    case CertificateFile:
        options.certificateFile = value;
        break;
    case Delay:
        options.delay = std::chrono::milliseconds(number("--delay", value, 3'600'000));
        break;
    case FaultOption:
        options.faults.push_back(fault(value));
        break;
    }
}

} // namespace

Options parseOptions(int argc, char** argv, std::string const& moduleDirectory) {
    Options options;
    options.plugin = moduleDirectory + "/sample_plugin.so";
    options.hostchecker = moduleDirectory + "/sample_hostchecker.so";
    // With a leading ":" and no messages of its own, getopt tells a missing argument from an unknown option.
    opterr = 0;
    for (int which; (which = getopt_long(argc, argv, ":", optionTable, nullptr)) != -1;) {
        if (which == ':')
            throw UsageError(std::string(argv[optind - 1]) + ": argument missing");
        if (which == '?')
            throw UsageError(std::string(argv[optind - 1]) + ": unknown option");
        apply(options, which, optarg);
    }
    if (optind < argc)
        throw UsageError(std::string(argv[optind]) + ": not an option");
    return options;
}

char const* usage() {
    return R"(usage: tarvik-devgateway [OPTION]...

An HTTPS gateway for one machine: serves the portal page, configurations, modules and
certificates, and answers host checks, until SIGINT or SIGTERM. Prints its URLs on stdout,
logs requests on stderr.

  --port N                  port to listen on; 0 picks a free one (default 8443)
  --host ADDR               address to listen on (default 127.0.0.1)
  --public-name NAME[:PORT] name put in URLs, for a proxy in front (default: host and port)
  --plugin MODULE           plug-in module, its signature beside it in MODULE.sig
                            (default ../modules/sample_plugin.so from the program)
  --hostchecker MODULE      host-checker module, likewise
                            (default ../modules/sample_hostchecker.so from the program)
  --poll-script FILE        what the sample plug-in answers: a line per poll, each a JSON array
  --hostcheck-rounds N      host-check posts answered "continue" before the last (default 2)
  --hostcheck-timer SECONDS pause between host-check posts (default 1)
  --certificate FILE        write the gateway's certificate to FILE (PEM)
  --delay MS                wait before every reply
  --fault FAULT[:PREFIX]    commit a fault on paths that begin with PREFIX (default: on all);
                            may be repeated. FAULT is one of
                              reset          close the connection without a reply
                              truncate       send half of the announced body, then close
                              bad-signature  one wrong character in the signature of a module
                              status=CODE    reply with that status (200 to 599), body unchanged
  --help                    print this text

Exit code: 0 after a signal, 1 on failure, 64 on wrong usage.
)";
}

} // namespace devgateway
