// The headless program against the development gateway, both as they are deployed.
#include "base/descriptor.h"
#include "e2e/site.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <thread>

namespace quillon::test {

namespace {

std::string const client = TEST_PROGRAMS "/tarvikclient-cli";

ChildProcess start(Site const& site, std::string const& launchUrl) {
    return ChildProcess({client, launchUrl}, {{"HOME", site.home()}});
}

TEST(Headless, sessions) {
    struct {
        std::string kind, output, log, call; // the last one in the log
    } const cases[] = {
        {"plugindll",
         "onDispatch 2\nonStatus 2\nonVpnStatus init\nonVpnStatus authenticating\nonVpnStatus getconfig\n"
         "onVpnStatus connected ip=10.8.0.2\nonVpnStatus connected ip=10.8.0.2\n"
         "onVpnStatus connected ip=10.8.0.2\nonVpnStatus\nonVpnStatus\nonStatus 4\n",
         "Plugin/sample-plugin.log", "DllStop2\n"},
        {"plugindllnotunnel", "onDispatch 4\nonStatus 4\n", "Plugin/sample-plugin.log",
         "LaunchSafeResource 3 demo-service\n"},
        {"hostchecker", "onDispatch 3\nonStatus 2\nonStatus 5\nonStatus 4\n",
         "hostchecker/sample-hostchecker.log", "CloseHostCheckerDll\n"},
    };
    for (auto const& [kind, output, log, call] : cases) {
        Site site({"--hostcheck-rounds", "1"});
        ChildProcess session = start(site, site.url(kind));
        EXPECT_EQ(session.wait(), 0) << kind << session.errors();
        EXPECT_EQ(session.output(), output);
        EXPECT_TRUE(site.moduleLog(log).ends_with(call)) << site.moduleLog(log);
        EXPECT_EQ(site.moduleLog(log).find("DllSetLogin2 alice\n") != std::string::npos, kind == "plugindll");
    }
}

TEST(Headless, session_beside_clients_that_say_nothing) {
    Site site;
    std::string const authority = site.authority();
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<in_port_t>(std::stoi(authority.substr(authority.find(':') + 1))));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    std::vector<Descriptor> silent;
    for (int i = 0; i < 100; ++i) {
        silent.emplace_back(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
        ASSERT_EQ(connect(silent.back().number(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    auto const begun = std::chrono::steady_clock::now();
    EXPECT_EQ(start(site, site.url("plugindllnotunnel")).wait(), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(5));
}

TEST(Headless, failures_have_exit_codes_and_one_line_each) {
    struct {
        std::vector<std::string> options;
        std::string kind;
        int code;
        std::string lastLine, errors, trusted = {};
    } const cases[] = {
        {{}, "refused", 1, "onFatalError\n", "tarvikclient-cli: the gateway refused the session"},
        {{"--fault", "bad-signature"}, "plugindll", 1, "onFatalError\n", "because of its signature"},
        {{"--fault", "truncate:/modules"}, "hostchecker", 1, "onFatalError\n", "could not be fetched"},
        {{"--fault", "status=503:/modules"},
         "plugindllnotunnel",
         1,
         "onFatalError\n",
         "could not be fetched"},
        {{"--fault", "reset:/mediation"}, "plugindll", 2, "onConnectError Code: ", ""},
        {{"--fault", "truncate:/mediation"}, "plugindll", 2, "onConnectError Code: 18(", ""},
        {{}, "plugindll", 2, "onConnectError Code: 60(", "", "somebody.else"},
    };
    for (auto const& [options, kind, code, lastLine, errors, trusted] : cases) {
        Site site(options);
        if (!trusted.empty())
            site.trust(trusted);
        ChildProcess session = start(site, site.url(kind));
        EXPECT_EQ(session.wait(), code) << kind;
        std::string const output = session.output();
        EXPECT_EQ(output.substr(output.rfind('\n', output.size() - 2) + 1).find(lastLine), 0u) << output;
        EXPECT_TRUE(code == 1 || output.find('\n') == output.size() - 1) << output;
        std::string const said = session.errors();
        EXPECT_NE(said.find(errors), std::string::npos) << said;
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), errors.empty() ? 0 : 1) << said;
    }
}

/// Expects that the session ends soon, in order and once.
void expectStopped(ChildProcess& session) {
    auto const ordered = std::chrono::steady_clock::now();
    EXPECT_EQ(session.wait(), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - ordered, std::chrono::seconds(8));
    std::string const output = session.output();
    EXPECT_EQ(output.find("onStatus 4\n") + 11, output.size()) << output;
}

/// A gateway whose module reports one status and then works until it is stopped.
Site siteWithTunnel() {
    return Site({}, R"([{"code":"5","status":"up"}])" + std::string(1000, '\n'));
}

TEST(Headless, signals_end_a_session_in_order_whose_url_nobody_sees) {
    for (int const number : {SIGTERM, SIGINT, SIGHUP}) {
        Site site = siteWithTunnel();
        ChildProcess session = start(site, site.url("plugindll"));
        ASSERT_TRUE(session.awaitOutput("onVpnStatus up\n"));
        EXPECT_EQ(session.commandLine(), client + std::string(1 + site.url("plugindll").size() + 1, '\0'));
        session.signal(number);
        EXPECT_EQ(session.wait(), 0) << number;
        EXPECT_NE(site.moduleLog("Plugin/sample-plugin.log").find("DllStop2"), std::string::npos);
    }
}

TEST(Headless, a_gateways_text_cannot_steer_the_terminal) {
    Site site({}, R"([{"code":"5","status":"a\u001b[2J\u202eb\u009b\n\u00e9"}])"
                  "\n");
    ChildProcess session = start(site, site.url("plugindll"));
    EXPECT_TRUE(session.awaitOutput("onVpnStatus a\\x1b[2J\\u202eb\\u009b\\n\xC3\xA9\n")) << session.output();
    session.signal(SIGTERM);
    EXPECT_EQ(session.wait(), 0);
}

TEST(Headless, one_order_to_stop_ends_a_request_that_hangs_and_two_the_program) {
    for (bool const twice : {false, true}) {
        Site site({"--delay", "600000"});
        ChildProcess session = start(site, site.url("plugindll"));
        ASSERT_TRUE(site.awaitClient());
        session.signal(SIGTERM);
        if (twice)
            session.signal(SIGINT);
        int const code = session.wait();
        EXPECT_TRUE(twice ? code == -SIGTERM || code == -SIGINT : code == 0) << code;
        EXPECT_EQ(session.output(), twice ? "" : "onStatus 4\n");
    }
}

TEST(Headless, an_order_to_stop_is_heard_at_any_moment) {
    char const* const given = std::getenv("TARVIK_SIGNAL_ROUNDS");
    Site site = siteWithTunnel();
    std::mt19937 random(std::random_device{}());
    for (int left = given ? std::atoi(given) : 20; left > 0; --left) {
        std::filesystem::remove_all(site.home() + "/.Tarvik/Plugin");
        site.trust(site.authority());
        ChildProcess session = start(site, site.url("plugindll"));
        ASSERT_TRUE(site.awaitClient());
        for (auto hangUps = random() % 3; hangUps > 0; --hangUps) {
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 100000));
            session.signal(SIGHUP);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 100000));
        session.signal(SIGTERM);
        expectStopped(session);
        std::string const calls = site.moduleLog("Plugin/sample-plugin.log");
        EXPECT_EQ(calls.find("DllStart2") == calls.npos, calls.find("DllStop2") == calls.npos) << calls;
    }
}

/// The session ends while the main thread is still busy with the hang-up that ended it.
TEST(Headless, an_order_to_stop_is_heard_after_a_hang_up) {
    std::vector<std::string> command{
        "/usr/bin/strace", "-D", "-o", "/dev/null", "-etrace=futex", "-einject=futex:delay_exit=50000"};
    if (ChildProcess({"/usr/bin/env", command[0], "true"}).wait() != 0)
        GTEST_SKIP() << "strace is not installed, or nothing may be traced";
    Site site = siteWithTunnel();
    command.insert(command.end(), {client, site.url("plugindll")});
    // The leak check needs to trace the program itself.
    ChildProcess session(command, {{"HOME", site.home()}, {"ASAN_OPTIONS", "detect_leaks=0"}});
    ASSERT_TRUE(session.awaitOutput("onVpnStatus up\n"));
    session.signal(SIGHUP);
    ASSERT_TRUE(session.awaitOutput("onStatus 4\n"));
    session.signal(SIGTERM);
    expectStopped(session);
}

TEST(Headless, programs_say_what_they_are_without_a_home_or_a_display) {
    std::pair<std::string, std::string> const cases[] = {{"--version", " 8.2.0.21\n"},
                                                         {"--help", "print the program's version\n"}};
    for (std::string const& program : {client, std::string(TEST_PROGRAMS "/tarvikclient")})
        for (auto const& [option, end] : cases) {
            if (!std::filesystem::exists(program))
                continue; // built without windows
            ChildProcess asked({program, option}, {{"HOME", "/dev/null"}, {"DISPLAY", ""}});
            EXPECT_EQ(asked.wait(), 0) << program << option << asked.errors();
            EXPECT_TRUE(asked.output().ends_with(end)) << asked.output();
            EXPECT_EQ(asked.errors(), "");
        }
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

} // namespace

} // namespace quillon::test
