// What the program is asked to do.
#pragma once

namespace quillon::cli {

struct CommandLine {
    enum class Task { session, showPolicy, wrongUsage };

    Task task = Task::wrongUsage;
    char* url = nullptr; ///< of a session; one of the arguments
    bool yes = false;    ///< whether the answer is yes where the policy asks about a gateway
};

/// Takes the program's arguments apart: "URL", "--yes URL" or "--policy".
CommandLine readCommandLine(int argc, char** argv);

/// What readCommandLine() understands, for the user, in lines.
extern char const usage[];

} // namespace quillon::cli
