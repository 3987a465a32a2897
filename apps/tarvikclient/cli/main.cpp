// The client without a screen: one session, one line per notification on standard output.
#include "tarvikclient/cli/commandline.h"
#include "tarvikclient/cli/consent.h"
#include "tarvikclient/cli/failuretext.h"
#include "tarvikclient/cli/linenotify.h"
#include "tarvikclient/cli/policyreport.h"
#include "tarvikclient/cli/wakeups.h"
#include "tarvikclient/client.h"
#include "tarvikclient/launchargument.h"
#include "tarvikclient/programinformation.h"

#include <cstdio>
#include <exception>

namespace {

using namespace quillon;

constexpr int exitUsage = 64;
constexpr int exitFailure = 1;

/// Serves wake-ups until the session has ended.
cli::Outcome serve(TarvikClient& client, cli::LineNotify& notify, cli::Wakeups& wakeups) {
    while (notify.outcome() == cli::Outcome::running) {
        switch (wakeups.wait()) {
        case cli::Wakeup::stop:
            client.cancel(); // holds for what comes after it too
            break;
        case cli::Wakeup::hangUp:
            // Not restart(): the session may have ended just now, and another one would be heard by nobody.
            client.stop();
            break;
        case cli::Wakeup::news:
            break;
        }
    }
    client.join();
    return notify.outcome();
}

int runSession(cli::CommandLine const& arguments) {
    static auto& wakeups = *new cli::Wakeups;
    cli::LineNotify notify(wakeups);
    cli::Consent consent;
    TarvikClient client(notify, arguments.yes ? &consent : nullptr);
    if (client.leftSession())
        std::fprintf(stderr, "tarvikclient-cli: %s\n", client.leftSession()->describe().str());
    client.run(takeArgument(arguments.url));
    cli::Outcome const outcome = serve(client, notify, wakeups);
    if (outcome == cli::Outcome::fatalError)
        std::fprintf(stderr, "tarvikclient-cli: %s\n", cli::describe(client.getFailure()).str());
    return static_cast<int>(outcome);
}

} // namespace

int main(int argc, char** argv) {
    if (auto const code = answerAboutProgram(argc, argv, "tarvikclient-cli", cli::usage))
        return *code;
    cli::CommandLine const arguments = cli::readCommandLine(argc, argv);
    if (arguments.task == cli::CommandLine::Task::wrongUsage) {
        std::fputs(cli::usage, stderr);
        return exitUsage;
    }
    try {
        if (arguments.task == cli::CommandLine::Task::showPolicy)
            return cli::showPolicy();
        return runSession(arguments);
    } catch (std::exception const& e) {
        std::fprintf(stderr, "tarvikclient-cli: %s\n", e.what());
    }
    return exitFailure;
}
