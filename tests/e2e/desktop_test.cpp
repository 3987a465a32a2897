// The desktop program against the development gateway, both as they are deployed, driven through the
// accessibility bus: what these tests find is also what a screen reader would say.
#include "desktop/uidriver.h"
#include "e2e/policyfixture.h"
#include "e2e/site.h"
#include "support/repeated.h"

#include <gtest/gtest.h>
#include <libintl.h>
#include <locale.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <list>
#include <thread>

extern "C" int _nl_msg_cat_cntr; // the C library's own way of being told that LANGUAGE has changed

namespace quillon::test {

namespace {

std::string const program = TEST_PROGRAMS "/tarvikclient";
std::string const button = "push button";
char const logPath[] = "/tmp/tarvikclient.log";

/// What the catalogue has for a key, as the accessibility bus shows it.
std::string text(char const* key, char const* language = "en") {
    setlocale(LC_ALL, "C.UTF-8");
    setenv("LANGUAGE", language, 1);
    ++_nl_msg_cat_cntr;
    bindtextdomain("tarvikclient", TEST_CATALOGUES);
    std::string result = dgettext("tarvikclient", key);
    result.erase(std::remove(result.begin(), result.end(), '&'), result.end());
    return result;
}

std::string withGateway(char const* key, std::string const& name) {
    std::string result = text(key);
    return result.replace(result.find("{gateway}"), 9, name);
}

/// A URL at which nothing listens.
std::string const refusedUrl = "tarvik://secret-ticket@127.0.0.1:1/mediation?lang=en";

/// A display of its own, which can end.
struct Display : ChildProcess {
    Display() : ChildProcess({"/usr/bin/Xvfb", "-displayfd", "1", "-nolisten", "tcp"}) {
        EXPECT_TRUE(awaitOutput("\n")) << errors();
    }
    std::string name() const { return ":" + output().substr(0, output().find("\n")); }
};

class Desktop : public testing::Test {
protected:
    ChildProcess start(std::string const& url) {
        return ChildProcess({program, url}, {{"HOME", site().home()}, {"LANGUAGE", ""}});
    }
    /// Made when first wanted, for tests that want no options.
    Site& site(std::vector<std::string> const& options = {}, std::string const& script = {}) {
        if (m_sites.empty())
            m_sites.emplace_back(options, script);
        return m_sites.front();
    }
    Site& siteWithPolls(std::string const& script) { return site({}, script); }
    Site& siteWithTunnel() {
        return siteWithPolls(repeated(R"([{"code":"5","status":"connected"}])"
                                      "\n",
                                      999));
    }
    void choose(std::string const& shownInPanel, std::string const& entry) {
        ASSERT_TRUE(ui.contextClick({"label", shownInPanel})) << ui.describe();
        ASSERT_TRUE(ui.click({"menu item", entry})) << ui.describe();
    }
    void TearDown() override {
        if (HasFailure())
            std::fprintf(stderr, "on the screen:\n%slog:\n%s", ui.describe().c_str(),
                         readFile(logPath).c_str());
    }

    std::list<Site> m_sites;
    UiDriver ui;
};

TEST_F(Desktop, panel_follows_the_tunnel_and_the_menu_stops_it) {
    siteWithPolls(repeated(R"([{"code":"5","status":"init"}])"
                           "\n",
                           6) +
                  repeated(R"([{"code":"5","status":"authenticating"}])"
                           "\n",
                           6) +
                  repeated(R"([{"code":"5","status":"connected ip=10.8.0.2"}])"
                           "\n",
                           999));
    ChildProcess client = start(site().url("plugindll"));
    EXPECT_TRUE(ui.awaitShown({"label", text("VPN_INIT") + "*"}));
    EXPECT_TRUE(ui.awaitShown({"label", text("VPN_AUTHENTICATING") + "*"}));
    std::string const connected =
        text("VPN_GIVENIP %s").replace(text("VPN_GIVENIP %s").find("%s"), 2, "10.8.0.2");
    EXPECT_TRUE(ui.awaitShown({"label", connected}));
    EXPECT_EQ(client.commandLine(), program + std::string(1 + site().url("plugindll").size() + 1, '\0'));
    choose(connected, text("&Quit"));
    EXPECT_EQ(client.wait(), 0) << client.errors();
    EXPECT_NE(site().moduleLog("Plugin/sample-plugin.log").find("DllStop2"), std::string::npos);
    std::string const log = readFile(logPath);
    EXPECT_NE(log.find("status icon: none"), std::string::npos);
    EXPECT_EQ(log.find("the program ends without it"), std::string::npos);
}

TEST_F(Desktop, says_how_the_session_is_and_what_has_failed_on_whatever_desktop) {
    siteWithTunnel();
    ChildProcess client = start(site().url("plugindll"));
    std::string const connected = text("STATE_CONNECTED");
    EXPECT_TRUE(ui.awaitShown({"label", connected.substr(0, connected.find('{')) + "*"})) << ui.describe();
    client.signal(SIGTERM);
    EXPECT_EQ(client.wait(), 0) << client.errors();
    ChildProcess refused = start(refusedUrl);
    EXPECT_TRUE(ui.awaitShown({"label", withGateway("CONNECTION_ERROR", "127.0.0.1:1")})) << ui.describe();
    EXPECT_TRUE(ui.press({button, text("Quit")}));
    EXPECT_EQ(refused.wait(), 0) << refused.errors();
}

TEST_F(Desktop, a_display_that_ends_leaves_the_module_its_time_to_stop) {
    siteWithTunnel();
    Display display;
    ChildProcess client({program, site().url("plugindll")},
                        {{"HOME", site().home()}, {"DISPLAY", display.name()}});
    ASSERT_TRUE(ui.awaitShown({"label", text("VPN_CONNECTED")})) << ui.describe();
    display.signal(SIGTERM);
    EXPECT_GT(client.wait(), 0) << client.errors();
    EXPECT_NE(site().moduleLog("Plugin/sample-plugin.log").find("DllStop2"), std::string::npos);
}

/// The toolkit ends the process by itself there; what ends in order is told of at no next start.
TEST_F(Desktop, so_does_a_compositor_and_the_next_start_tells_of_nothing) {
    std::string const weston = "/usr/bin/weston";
    if (access(weston.c_str(), X_OK) != 0)
        GTEST_SKIP() << "weston is not installed";
    siteWithTunnel();
    TemporaryDirectory runtime;
    ChildProcess::Environment const around{{"HOME", site().home()},
                                           {"XDG_RUNTIME_DIR", runtime.path()},
                                           {"DISPLAY", ""},
                                           {"GDK_BACKEND", "wayland"},
                                           {"WAYLAND_DISPLAY", "wl"}};
    ChildProcess compositor({weston, "--backend=headless-backend.so", "--socket=wl"}, around);
    auto const awaits = [](auto const& condition) {
        for (int left = 200; left > 0 && !condition(); --left)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        return condition();
    };
    ASSERT_TRUE(awaits([&] { return access((runtime.path() + "/wl").c_str(), F_OK) == 0; }));
    ChildProcess client({program, site().url("plugindll")}, around);
    auto const called = [&](char const* name) {
        return site().moduleLog("Plugin/sample-plugin.log").find(name) != std::string::npos;
    };
    ASSERT_TRUE(awaits([&] { return called("DllGetErrors2"); })) << client.errors();
    compositor.signal(SIGTERM);
    EXPECT_GT(client.wait(), 0) << client.errors();
    EXPECT_TRUE(called("DllStop2"));
    ChildProcess next({TEST_PROGRAMS "/tarvikclient-cli", refusedUrl}, around);
    EXPECT_EQ(next.wait(), 2);
    EXPECT_EQ(next.errors(), "");
}

TEST_F(Desktop, refused_connection_is_retried_and_then_quit) {
    ChildProcess client = start(refusedUrl);
    ASSERT_TRUE(ui.awaitShown({button, text("Retry")}));
    EXPECT_EQ(ui.wrongNames(), "");
    EXPECT_TRUE(ui.awaitShown({"label", withGateway("CONNECTION_ERROR", "127.0.0.1:1")}));
    EXPECT_TRUE(ui.click({button, text("Retry")}));
    ASSERT_TRUE(ui.awaitShown({button, text("Retry")}));
    // Beside the dialog, with the panel as the only place of the menu.
    EXPECT_TRUE(ui.click({button, text("PANEL_MENU")}));
    EXPECT_TRUE(ui.click({"menu item", text("&Quit")})) << ui.describe();
    EXPECT_EQ(client.wait(), 0) << client.errors();
    std::string const log = readFile(logPath);
    EXPECT_NE(log.find("TarvikClient.main"), std::string::npos) << log;
    EXPECT_EQ(log.find("secret-ticket"), std::string::npos);
}

TEST_F(Desktop, what_is_entered_in_the_settings_is_in_the_file) {
    ChildProcess client = start(refusedUrl);
    ASSERT_TRUE(ui.click({button, text("Settings")}));
    ASSERT_TRUE(ui.awaitShown({button, text("Add")}));
    enum Field { login, password, domain };
    EXPECT_TRUE(ui.enter(login, "CORP\\alice"));
    EXPECT_TRUE(ui.enter(password, "pässword"));
    for (char const* const name : {"b.example", "a.example:8443"}) {
        EXPECT_TRUE(ui.enter(domain, name));
        EXPECT_TRUE(ui.click({button, text("Add")}));
        EXPECT_TRUE(ui.awaitShown({"", name})) << ui.describe();
    }
    EXPECT_TRUE(ui.select({"", "b.example"}));
    EXPECT_TRUE(ui.click({button, text("Remove")}));
    EXPECT_TRUE(ui.awaitGone({"", "b.example"}));
    EXPECT_TRUE(ui.click({button, text("&OK")}));
    EXPECT_TRUE(ui.awaitGone({button, text("Add")}));
    EXPECT_TRUE(ui.click({button, text("Quit")}));
    EXPECT_EQ(client.wait(), 0) << client.errors();
    std::string const settings = readFile(String::copyOf(site().settingsPath()));
    for (char const* const part : {"alice", "CORP", "pässword", "a.example:8443"})
        EXPECT_NE(settings.find(part), std::string::npos) << settings;
    EXPECT_EQ(settings.find("b.example"), std::string::npos) << settings;
}

TEST_F(Desktop, every_window_and_control_has_a_name_of_its_own) {
    siteWithTunnel();
    ChildProcess client = start(site().url("plugindll"));
    std::string const panel = text("VPN_CONNECTED");
    ASSERT_TRUE(ui.awaitShown({"label", panel}));
    EXPECT_EQ(ui.wrongNames(), "");
    choose(panel, text("MENU_LOGS"));
    ASSERT_TRUE(ui.awaitShown({button, text("&Save")}));
    EXPECT_EQ(ui.wrongNames(), "");
    choose(panel, text("&About"));
    ASSERT_TRUE(ui.awaitShown({"label", "8.2.0.21"}));
    EXPECT_EQ(ui.wrongNames(), "");
    client.signal(SIGTERM);
    EXPECT_EQ(client.wait(), 0) << client.errors();
    std::string url = refusedUrl;
    ChildProcess other = start(url.replace(url.find("lang=en"), 7, "lang=fr"));
    auto const french = [](char const* key) { return text(key, "fr"); };
    ASSERT_TRUE(ui.click({button, french("Settings")}));
    ASSERT_TRUE(ui.awaitShown({button, french("Add")}));
    EXPECT_TRUE(ui.enter(0, "<") && ui.enter(2, "no server"));
    EXPECT_TRUE(ui.click({button, french("Add")}));
    EXPECT_TRUE(ui.awaitShown({"label", french("SETTINGS_SSL_DOMAIN_WANTED").substr(0, 20) + "*"}));
    EXPECT_TRUE(ui.click({button, french("&OK")}));
    EXPECT_TRUE(ui.awaitShown({"label", french("SETTINGS_NOT_STORABLE").substr(0, 20) + "*"}));
    EXPECT_EQ(ui.wrongNames(), "");
    EXPECT_FALSE(ui.awaitShown({button, "Valider"}, std::chrono::milliseconds(0))) << "GTK's word for OK";
    other.signal(SIGTERM);
    EXPECT_EQ(other.wait(), 0) << other.errors();
}

TEST_F(Desktop, a_fatal_error_is_told_in_the_portals_language) {
    // No German locale is needed: the texts come from the client's own catalogue.
    std::string url = site({"--fault", "bad-signature"}).url("plugindll");
    ChildProcess client = start(url.replace(url.find("lang=en"), 7, "lang=de"));
    for (char const* const key : {"UNKNOWN_ERROR_HAS_OCCURED", "FATAL_SIGNATURE", "STEP_TELL", "STEP_LOG"})
        EXPECT_TRUE(ui.awaitShown({"label", text(key, "de")})) << ui.describe();
    EXPECT_EQ(ui.wrongNames(), "");
    EXPECT_TRUE(ui.click({button, text("&Quit", "de")})) << ui.describe();
    EXPECT_EQ(client.wait(), 0) << client.errors();
}

TEST_F(Desktop, a_url_that_comes_while_it_ends_is_run_by_the_process_that_brings_it) {
    site({"--delay", "600000"});
    ChildProcess ending = start(site().url("plugindll"));
    ASSERT_TRUE(ui.awaitShown({"label", withGateway("STATE_ASKING", site().authority())})) << ui.describe();
    ending.signal(SIGTERM);
    for (int left = 3000; left > 0 && readFile(logPath).find("refuseUrls") == std::string::npos; --left)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    ChildProcess next = start(refusedUrl);
    EXPECT_EQ(ending.wait(), 0) << ending.errors();
    EXPECT_TRUE(ui.click({button, text("Quit")})) << ui.describe();
    EXPECT_EQ(next.wait(), 0) << next.errors();
}

TEST_F(Desktop, a_signal_ends_it_with_the_settings_over_the_error) {
    ChildProcess client = start(refusedUrl);
    ASSERT_TRUE(ui.click({button, text("Settings")}));
    ASSERT_TRUE(ui.awaitShown({button, text("Add")}));
    client.signal(SIGTERM);
    EXPECT_EQ(client.wait(), 0) << client.errors();
}

TEST_F(Desktop, asks_for_the_bytes_of_its_url_also_of_one_that_it_is_handed_while_it_idles) {
    // The scheme is not looked at, and the path is no UTF-8.
    std::string const url = "other://ticket@" + site().authority() + "/caf\xE9?lang=en";
    ChildProcess idle({program}, {{"HOME", site().home()}});
    ASSERT_TRUE(idle.awaitOutput("TARVIK_ENABLE_COREDUMPS"));
    ChildProcess second = start(url);
    EXPECT_EQ(second.wait(), 0);
    ASSERT_TRUE(ui.click({button, text("&Quit")})) << ui.describe();
    EXPECT_EQ(idle.wait(), 0) << idle.errors();
    EXPECT_EQ(site().requests(" /caf%E9?"), 1u);
    ChildProcess first = start(url);
    ASSERT_TRUE(ui.click({button, text("&Quit")})) << ui.describe();
    EXPECT_EQ(first.wait(), 0) << first.errors();
    ChildProcess({TEST_PROGRAMS "/tarvikclient-cli", url}, {{"HOME", site().home()}}).wait();
    EXPECT_EQ(site().requests(" /caf%E9?"), 3u);
}

TEST_F(Desktop, a_link_that_the_running_client_does_not_take_is_not_lost_in_silence) {
    ChildProcess running({TEST_PROGRAMS "/gui_instanceprobe", "0", "", "9"}, {{"HOME", site().home()}});
    ASSERT_TRUE(running.awaitOutput("first"));
    running.signal(SIGSTOP);
    {
        ChildProcess second = start(refusedUrl);
        ASSERT_TRUE(ui.awaitShown({"label", text("HANDOVER_WAITING").substr(0, 30) + "*"})) << ui.describe();
        running.signal(SIGCONT);
        EXPECT_EQ(second.wait(), 0) << second.errors();
        EXPECT_EQ(second.errors().find("has not taken"), std::string::npos);
    }
    running.signal(SIGSTOP);
    ChildProcess second = start(refusedUrl);
    EXPECT_TRUE(
        ui.awaitShown({"label", text("HANDOVER_FAILED").substr(0, 30) + "*"}, std::chrono::seconds(25)));
    for (int tries = 3; tries > 0 && ui.click({button, text("&Quit")}); --tries) // it moves as the text grows
        if (ui.awaitGone({button, text("&Quit")}, std::chrono::seconds(2)))
            break;
    EXPECT_EQ(second.wait(), 1);
    EXPECT_NE(second.errors().find("has not taken the URL\n"), std::string::npos) << second.errors();
}

/// Under a policy that asks about each gateway.
class DesktopPolicy : public Desktop {
protected:
    DesktopPolicy() { m_policy.write("<gateways><others>ask</others></gateways>"); }

    std::vector<std::string> command() { return {program + "-policytest", site().url("plugindll")}; }
    ChildProcess::Environment environment() { return {{"HOME", site().home()}}; }

    ProgramPolicy m_policy;
};

TEST_F(DesktopPolicy, asks_in_one_window_however_many_links_are_opened) {
    siteWithTunnel();
    ChildProcess client(command(), environment());
    std::string const question = text("GATEWAY_QUESTION");
    ASSERT_TRUE(ui.awaitShown({"label", question.substr(0, question.find(" {")) + "*"})) << ui.describe();
    EXPECT_EQ(ui.wrongNames(), "");
    std::list<ChildProcess> others;
    for (int i = 0; i < 5; ++i)
        others.emplace_back(command(), environment());
    for (ChildProcess& other : others)
        EXPECT_EQ(other.wait(), 0) << other.errors();
    std::string const screen = ui.describe(), yes = button + " '" + text("&Yes") + "'";
    EXPECT_NE(screen.find(yes), std::string::npos) << screen;
    EXPECT_EQ(screen.find(yes), screen.rfind(yes)) << screen;
    EXPECT_EQ(site().moduleLog("Plugin/sample-plugin.log"), "");
    EXPECT_TRUE(ui.click({button, text("&Yes")}));
    ASSERT_TRUE(ui.awaitShown({"label", text("VPN_CONNECTED")})) << ui.describe();
    choose(text("VPN_CONNECTED"), text("&Quit"));
    EXPECT_EQ(client.wait(), 0) << client.errors();
}

TEST_F(DesktopPolicy, a_question_ends_with_a_signal_and_with_the_display) {
    std::string const no = text("&No");
    {
        ChildProcess client(command(), environment());
        ASSERT_TRUE(ui.awaitShown({button, no})) << ui.describe();
        client.signal(SIGTERM);
        EXPECT_EQ(client.wait(), 0) << client.errors();
    }
    Display display;
    auto elsewhere = environment();
    elsewhere["DISPLAY"] = display.name();
    ChildProcess client(command(), elsewhere);
    ASSERT_TRUE(ui.awaitShown({button, no})) << ui.describe();
    display.signal(SIGTERM);
    EXPECT_GT(client.wait(), 0) << client.errors();
    EXPECT_EQ(site().moduleLog("Plugin/sample-plugin.log"), "");
}

TEST_F(Desktop, a_start_that_cannot_succeed_says_so_and_ends) {
    for (auto const& command :
         {std::vector{program, std::string("a"), std::string("b")}, {program, "--unknown"}}) {
        ChildProcess wrong(command);
        EXPECT_EQ(wrong.wait(), 64);
        EXPECT_EQ(wrong.errors().find("usage: tarvikclient [URL]\n"), 0u);
    }
    ChildProcess blind({program, refusedUrl}, {{"HOME", site().home()}, {"DISPLAY", ""}});
    EXPECT_GT(blind.wait(), 0);
    ChildProcess homeless({program, refusedUrl}, {{"HOME", "/dev/null"}});
    EXPECT_TRUE(ui.awaitShown({"label", text("UNKNOWN_ERROR_HAS_OCCURED")}));
    EXPECT_TRUE(ui.awaitShown({"label", text("START_DIRECTORY")})) << ui.describe();
    EXPECT_TRUE(ui.click({button, text("&Quit")})) << ui.describe();
    EXPECT_EQ(homeless.wait(), 1);
}

} // namespace

} // namespace quillon::test
