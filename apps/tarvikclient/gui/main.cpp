// The desktop client: tarvikclient [URL].
#include "base/exception.h"
#include "tarvikclient/gui/handover.h"
#include "tarvikclient/gui/platform/singleinstance.h"
#include "tarvikclient/gui/platform/toolkitenvironment.h"
#include "tarvikclient/gui/tarvikclientgui.h"
#include "tarvikclient/launchargument.h"
#include "tarvikclient/programinformation.h"

#include <cstdio>

wxIMPLEMENT_APP_NO_MAIN(quillon::TarvikClientGui);

namespace {

using namespace quillon;

constexpr char usage[] = "usage: tarvikclient [URL]\n"
                         "       tarvikclient --help      print this text\n"
                         "       tarvikclient --version   print the program's version\n";
constexpr int exitUsage = 64;
constexpr int exitFailure = 1;

int run(int argc, char** argv) {
    prepareEnvironment();
    String const url = argc == 2 ? takeArgument(argv[1]) : String();
    argv[argc = 1] = nullptr; // of no use to the toolkit, which copies what it is given
    // Before the toolkit starts: a process that only brings a URL needs neither the time nor a display.
    SingleInstance instance;
    HandOver handOver(instance, url);
    switch (handOver.finish(argc, argv)) {
    case SingleInstance::Role::first:
        TarvikClientGui::setLaunch(instance, url);
        return handOver.runApplication(argc, argv);
    case SingleInstance::Role::second:
        return 0;
    case SingleInstance::Role::unheard:
        break;
    }
    return exitFailure;
}

} // namespace

int main(int argc, char** argv) {
    if (auto const code = answerAboutProgram(argc, argv, "tarvikclient", usage))
        return *code;
    if (argc > 2 || (argc == 2 && argv[1][0] == '-')) {
        std::fputs(usage, stderr);
        return exitUsage;
    }
    try {
        return run(argc, argv);
    } catch (std::exception const& e) {
        std::fprintf(stderr, "tarvikclient: %s\n", e.what());
    }
    return exitFailure;
}
