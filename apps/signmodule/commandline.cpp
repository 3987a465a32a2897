#include "signmodule/commandline.h"

#include "tarvikclient/modulemanifest.h"

namespace quillon::signmodule {

char const usage[] =
    "usage: tarvik-signmodule sign --key PRIVATE.pem --name NAME --version VERSION\n"
    "                              [--kind plugin|hostchecker --platform linux-x86_64|macos-x86_64\n"
    "                               [--companion FILE]...] MODULE\n"
    "       tarvik-signmodule verify --key PUBLIC.pem MODULE\n"
    "sign writes MODULE.sig; verify checks it. With a kind and a platform the signature also covers them and "
    "the\n"
    "companions: files below the module's directory that are installed with it.\n";

namespace {

String* optionOf(CommandLine& line, String const& name) {
    if (name == "--key")
        return &line.key;
    if (line.command != Command::sign)
        return nullptr;
    if (name == "--companion")
        return &line.companions.emplace_back();
    std::pair<char const*, String*> const options[] = {{"--name", &line.name},
                                                       {"--version", &line.version},
                                                       {"--kind", &line.kind},
                                                       {"--platform", &line.platform}};
    for (auto const& [option, value] : options)
        if (name == option)
            return value;
    return nullptr;
}

bool isComplete(CommandLine const& line) {
    if (line.key.empty() || line.module.empty())
        return false;
    if (line.command == Command::verify)
        return true;
    bool const bare = line.kind.empty() && line.platform.empty() && line.companions.empty();
    return !line.name.empty() && !line.version.empty() &&
           (bare || (ModuleManifest::isKind(line.kind) && ModuleManifest::isPlatform(line.platform)));
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
        if (String* const option = optionOf(line, argument); option && i + 1 < argc && *argv[i + 1])
            *option = argv[++i];
        else if (argument.starts('-') || !line.module.empty())
            return std::nullopt;
        else
            line.module = argument;
    }
    return isComplete(line) ? std::optional(line) : std::nullopt;
}

} // namespace quillon::signmodule
