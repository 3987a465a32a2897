// The tool's command line.
#pragma once

#include "base/string.h"

#include <optional>

namespace quillon::signmodule {

enum class Command { sign, verify };

/// What the tool was asked to do; every text wraps an argument of main().
struct CommandLine {
    Command command = Command::sign;
    String key;
    String name;
    String version;
    String module;
};

extern char const usage[];

/// Nothing when an argument is missing, unknown or given to the wrong command.
std::optional<CommandLine> parseCommandLine(int argc, char const* const* argv);

} // namespace quillon::signmodule
