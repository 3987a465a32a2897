// The command line.
#pragma once

#include "devgateway/faults.h"

#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

namespace devgateway {

struct Options {
    bool help = false;
    std::string host = "127.0.0.1"; // address to listen on
    int port = 8443;                // 0: any free port
    std::string publicName;         // authority in URLs; empty: host and port that are listened on
    std::string plugin;             // path of the plug-in module
    std::string hostchecker;        // path of the host-checker module
    std::string pollScriptFile;     // empty: the built-in script
    unsigned hostcheckRounds = 2;   // posts answered "continue" before the last
    std::chrono::seconds hostcheckTimer{1};
    std::string certificateFile; // where to write the certificate; empty: nowhere
    std::chrono::milliseconds delay{0};
    std::vector<Fault> faults;
};

/// The command line cannot be understood; what() says why.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads the command line. The default modules lie in moduleDirectory. Throws UsageError.
Options parseOptions(int argc, char** argv, std::string const& moduleDirectory);

/// The text of --help.
char const* usage();

} // namespace devgateway
