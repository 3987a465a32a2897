// What a program says of itself.
#pragma once

#include <optional>

namespace quillon {

/// Answers "--help" with `usage` and "--version" with the program's name and version, both on standard
/// output; only where that is all that the program is asked. The exit code then, 1 where the answer could not
/// be written; none for any other command line. Before anything else has been started.
std::optional<int> answerAboutProgram(int argc, char const* const* argv, char const* name, char const* usage);

} // namespace quillon
