#include "signmodule/commandline.h"

namespace quillon::signmodule {

char const usage[] = "usage: tarvik-signmodule sign --key PRIVATE.pem --name NAME --version VERSION MODULE\n"
                     "       tarvik-signmodule verify --key PUBLIC.pem MODULE\n"
                     "sign writes MODULE.sig; verify checks it.\n";

namespace {

String* optionOf(CommandLine& line, String const& name) {
    if (name == "--key")
        return &line.key;
    if (line.command == Command::sign && name == "--name")
        return &line.name;
    if (line.command == Command::sign && name == "--version")
        return &line.version;
    return nullptr;
}

bool isComplete(CommandLine const& line) {
    bool const described = line.command == Command::verify || (!line.name.empty() && !line.version.empty());
    return described && !line.key.empty() && !line.module.empty();
}

} // namespace

std::optional<CommandLine> parseCommandLine(int argc, char const* const* argv) {
    CommandLine line;
    String const command(argc > 1 ? argv[1] : "");
    if (command == "verify")
        line.command = Command::verify;
    else if (command != "sign")
        return std::nullopt;
    for (int i = 2; i < argc; ++i) {
        String const argument(argv[i]);
        if (String* const option = optionOf(line, argument); option && i + 1 < argc)
            *option = argv[++i];
        else if (argument.starts('-') || !line.module.empty())
            return std::nullopt;
        else
            line.module = argument;
    }
    return isComplete(line) ? std::optional(line) : std::nullopt;
}

} // namespace quillon::signmodule
