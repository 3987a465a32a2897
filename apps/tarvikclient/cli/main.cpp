// The client without a screen: one session, one line per notification on standard output.
#include "tarvikclient/cli/commandline.h"
#include "tarvikclient/cli/consent.h"
#include "tarvikclient/cli/linenotify.h"
#include "tarvikclient/cli/policyreport.h"
#include "tarvikclient/cli/wakeups.h"
#include "tarvikclient/client.h"

#include <cstdio>
#include <exception>

namespace {

using namespace quillon;

constexpr int exitUsage = 64;
constexpr int exitFailure = 1;

/// Serves wake-ups until the session has ended.
cli::Outcome serve(TarvikClient& client, cli::LineNotify& notify, cli::Wakeups& wakeups) {
    bool stopping = false;
    while (notify.outcome() == cli::Outcome::running) {
        cli::Wakeup const reason = wakeups.wait();
        if (reason == cli::Wakeup::restart)
            client.restart();
        stopping = stopping || reason == cli::Wakeup::stop;
        // An order to stop that came before there was anything to stop holds for what comes after it.
        if (stopping)
            client.stop();
    }
    client.join();
    return notify.outcome();
}

int runSession(cli::CommandLine const& arguments) {
    cli::Wakeups wakeups;
    cli::LineNotify notify(wakeups);
    cli::Consent consent;
    TarvikClient client(notify, arguments.yes ? &consent : nullptr);
    client.run(arguments.url);
    return static_cast<int>(serve(client, notify, wakeups));
}

} // namespace

int main(int argc, char** argv) {
    cli::CommandLine const arguments = cli::readCommandLine(argc, argv);
    if (arguments.task == cli::CommandLine::Task::wrongUsage) {
        std::fputs(cli::usage, stderr);
        return exitUsage;
    }
    try {
        if (arguments.task == cli::CommandLine::Task::showPolicy)
            return cli::showPolicy();
        return runSession(arguments);
    } catch (Exception const& e) {
        std::fprintf(stderr, "tarvikclient-cli: %s\n", e.toString().str());
    } catch (std::exception const& e) {
        std::fprintf(stderr, "tarvikclient-cli: %s\n", e.what());
    }
    return exitFailure;
}
