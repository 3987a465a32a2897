// The tool's command line.
#pragma once

#include "base/string.h"

#include <optional>
#include <vector>

namespace quillon::signmodule {

enum class Command { sign, verify };

/// What the tool was asked to do; every text wraps an argument of main().
struct CommandLine {
    Command command = Command::sign;
    String key;
    String name;
    String version;
    String kind; ///< empty when no manifest is wanted
    String platform;
    std::vector<String> companions; ///< paths of files
    String module;
};

extern char const usage[];

/// Nothing when an argument is missing, unknown, empty or given to the wrong command.
std::optional<CommandLine> parseCommandLine(int argc, char const* const* argv);

} // namespace quillon::signmodule
