#include "tarvikclient/programinformation.h"

#include "tarvikclient/client.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace quillon {

std::optional<int> answerAboutProgram(int argc, char const* const* argv, char const* name,
                                      char const* usage) {
    std::string_view const asked = argc == 2 ? argv[1] : "";
    if (asked != "--help" && asked != "--version")
        return std::nullopt;
    std::string const answer =
        asked == "--help" ? std::string(usage) : std::string(name) + " " + TarvikClient::version + "\n";
    bool const written = std::fputs(answer.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
    return written ? 0 : 1;
}

} // namespace quillon
