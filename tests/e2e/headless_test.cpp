// The headless program against the development gateway, both as they are deployed.
#include "e2e/site.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <sstream>
#include <thread>

namespace quillon::test {

namespace {

std::string const client = TEST_PROGRAMS "/tarvikclient-cli";

ChildProcess start(Site const& site, std::string const& launchUrl) {
    return ChildProcess({client, launchUrl}, {{"HOME", site.home()}});
}

TEST(Headless, plug_in_session) {
    Site site;
    ChildProcess session = start(site, site.url("plugindll"));
    EXPECT_EQ(session.wait(), 0) << session.errors();
    EXPECT_EQ(session.output(), "onDispatch 2\nonStatus 2\nonVpnStatus init\nonVpnStatus authenticating\n"
                                "onVpnStatus getconfig\nonVpnStatus connected ip=10.8.0.2\n"
                                "onVpnStatus connected ip=10.8.0.2\nonVpnStatus connected ip=10.8.0.2\n"
                                "onVpnStatus\nonVpnStatus\nonStatus 4\n");
    std::string const log = site.moduleLog("Plugin/sample-plugin.log");
    EXPECT_NE(log.find("DllSetLogin2 alice\n"), std::string::npos);
    EXPECT_EQ(log.substr(log.rfind("DllStop2")), "DllStop2\n");
}

TEST(Headless, session_without_a_tunnel) {
    Site site;
    ChildProcess session = start(site, site.url("plugindllnotunnel"));
    EXPECT_EQ(session.wait(), 0);
    EXPECT_EQ(session.output(), "onDispatch 4\nonStatus 4\n");
    EXPECT_NE(site.moduleLog("Plugin/sample-plugin.log").find("LaunchSafeResource 3 demo-service\n"),
              std::string::npos);
}

TEST(Headless, host_check_session) {
    Site site({"--hostcheck-rounds", "1"});
    ChildProcess session = start(site, site.url("hostchecker"));
    EXPECT_EQ(session.wait(), 0);
    EXPECT_EQ(session.output(), "onDispatch 3\nonStatus 2\nonStatus 5\nonStatus 4\n");
    EXPECT_NE(site.moduleLog("hostchecker/sample-hostchecker.log").find("CloseHostCheckerDll"),
              std::string::npos);
}

TEST(Headless, failures_have_exit_codes_and_one_line_each) {
    struct {
        std::vector<std::string> options;
        std::string kind;
        int code;
        std::string lastLine;
    } const cases[] = {
        {{}, "refused", 1, "onFatalError\n"},
        {{"--fault", "bad-signature"}, "plugindll", 1, "onFatalError\n"},
        {{"--fault", "truncate:/modules"}, "hostchecker", 1, "onFatalError\n"},
        {{"--fault", "status=503:/modules"}, "plugindllnotunnel", 1, "onFatalError\n"},
        {{"--fault", "reset:/mediation"}, "plugindll", 2, "onConnectError Code: "},
        {{"--fault", "truncate:/mediation"}, "plugindll", 2, "onConnectError Code: 18("},
    };
    for (auto const& [options, kind, code, lastLine] : cases) {
        Site site(options);
        ChildProcess session = start(site, site.url(kind));
        EXPECT_EQ(session.wait(), code) << kind;
        std::string const output = session.output();
        EXPECT_EQ(output.find(lastLine, output.rfind('\n', output.size() - 2) + 1),
                  output.rfind('\n', output.size() - 2) + 1)
            << output;
    }
}

TEST(Headless, an_untrusted_gateway_is_a_connection_error_in_one_line) {
    Site site;
    site.trust("somebody.else");
    ChildProcess session = start(site, site.url("plugindll"));
    EXPECT_EQ(session.wait(), 2);
    EXPECT_EQ(session.output().find("onConnectError Code: 60("), 0u);
    EXPECT_NE(session.output().find(")\\n"), std::string::npos);
    EXPECT_EQ(session.output().find('\n'), session.output().size() - 1);
}

TEST(Headless, signals_end_a_session_in_order) {
    TemporaryDirectory directory;
    writeFile(directory.file("script"), std::string(100, '\n')); // polls without news
    for (int const number : {SIGTERM, SIGINT, SIGHUP}) {
        Site site({"--poll-script", std::string(directory.file("script").view())});
        ChildProcess session = start(site, site.url("plugindll"));
        ASSERT_TRUE(session.awaitOutput("onStatus 2\n"));
        session.signal(number);
        EXPECT_EQ(session.wait(), 0) << number;
        EXPECT_NE(site.moduleLog("Plugin/sample-plugin.log").find("DllStop2"), std::string::npos);
    }
}

TEST(Headless, an_order_to_stop_before_there_is_anything_to_stop_is_kept) {
    TemporaryDirectory directory;
    writeFile(directory.file("script"), std::string(100, '\n'));
    Site site({"--poll-script", std::string(directory.file("script").view()), "--delay", "300"});
    ChildProcess session = start(site, site.url("plugindll"));
    ASSERT_TRUE(site.awaitClient());
    session.signal(SIGTERM);
    EXPECT_EQ(session.wait(), 0);
    EXPECT_EQ(session.output(), "onDispatch 2\nonStatus 2\nonStatus 4\n");
}

TEST(Headless, a_second_order_to_stop_ends_a_request_that_hangs) {
    Site site({"--delay", "600000"});
    ChildProcess session = start(site, site.url("plugindll"));
    ASSERT_TRUE(site.awaitClient());
    session.signal(SIGTERM);
    // The first one has been seen when it no longer has a handler.
    for (int left = 3000; left > 0 && !session.hasEnded(); --left) {
        session.signal(SIGTERM);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(session.wait(), -SIGTERM);
}

TEST(Headless, wrong_usage_and_an_unusable_home) {
    for (std::vector<std::string> const& arguments :
         {std::vector<std::string>{client}, {client, "a", "b"}, {client, "--unknown"}}) {
        ChildProcess wrong(arguments);
        EXPECT_EQ(wrong.wait(), 64);
        EXPECT_EQ(wrong.errors().find("usage: tarvikclient-cli URL"), 0u);
        EXPECT_EQ(wrong.output(), "");
    }
    ChildProcess homeless({client, "tarvik://h/"}, {{"HOME", "/dev/null"}});
    EXPECT_EQ(homeless.wait(), 1);
    EXPECT_EQ(homeless.errors().find('\n'), homeless.errors().size() - 1) << homeless.errors();
}

TEST(Headless, a_launch_url_of_128000_bytes) {
    Site site;
    ChildProcess session = start(site, site.url("refused") + "&x=" + std::string(128000, 'y'));
    int const code = session.wait();
    EXPECT_TRUE(code == 1 || code == 2) << code;
}

} // namespace

} // namespace quillon::test
