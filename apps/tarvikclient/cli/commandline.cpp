#include "tarvikclient/cli/commandline.h"

#include <string_view>

namespace quillon::cli {

char const usage[] = "usage: tarvikclient-cli URL\n"
                     "       tarvikclient-cli --yes URL   also where the policy asks about the gateway\n"
                     "       tarvikclient-cli --policy    print the policy that is in force\n"
                     "       tarvikclient-cli --help      print this text\n"
                     "       tarvikclient-cli --version   print the program's version\n";

CommandLine readCommandLine(int argc, char** argv) {
    bool const yes = argc == 3 && argv[1] == std::string_view("--yes");
    if (argc == 2 && argv[1] == std::string_view("--policy"))
        return {CommandLine::Task::showPolicy};
    if ((argc == 2 || yes) && argv[argc - 1][0] != '-')
        return {CommandLine::Task::session, argv[argc - 1], yes};
    return {};
}

} // namespace quillon::cli
