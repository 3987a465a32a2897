// Sessions that are cut off: whoever quits does not wait for the network.
#include "client/clientfixture.h"

#include "tarvikclient/downloadManager.h"

#include <chrono>
#include <filesystem>
#include <thread>

namespace quillon::test {

namespace {

// About a second is promised; not cut off, each of these sessions would take a minute or an hour.
constexpr unsigned long bearableMs = 4000;
char const cutOff[] = "onConnectError Code: 42(";

class CancelTest : public ClientTest {
protected:
    void start() {
        makeClient();
        m_client->run(m_gateway.launchUrl());
    }
    /// Cancels the session and expects its thread to end by that.
    void cancel() {
        auto const begin = std::chrono::steady_clock::now();
        m_client->cancel();
        EXPECT_TRUE(m_client->join(bearableMs));
        auto const took = std::chrono::steady_clock::now() - begin;
        RecordProperty("ms", static_cast<int>(took / std::chrono::milliseconds(1)));
    }
    void expectCutOff() const { EXPECT_EQ(m_notify.lines().back().find(cutOff), 0u); }
    /// Serves what a session with a plug-in needs; the module goes on until it is stopped.
    void servePlugin() {
        m_gateway.serve("/certs/client.pem", "client");
        m_gateway.serve("/certs/ca.pem", "ca");
        m_gateway.serveResult(m_gateway.pluginConfiguration());
        serveModule("test_plugin");
    }
    void serveHostchecker() {
        serveModule("test_hostchecker");
        m_gateway.serveResult(m_gateway.hostcheckerConfiguration());
    }
    /// From now on cancels as soon as `line` is notified, on the client thread.
    void cancelAt(std::string const& line) {
        m_notify.onLine = [this, line](std::string const& notified) {
            if (notified == line)
                m_client->cancel();
        };
    }

    Reply const m_endless = raw("HTTP/1.1 200 OK\r\n\r\n", Reply::trickle);
};

TEST_F(CancelTest, a_gateway_that_does_not_answer) {
    m_gateway.serve("/mediation", silent(Reply::hold));
    start();
    ASSERT_TRUE(m_gateway.server().awaitRequests(1));
    EXPECT_FALSE(m_client->join(300)) << "it waits";
    cancel();
    expectCutOff();
    EXPECT_EQ(m_notify.lines().size(), 1u);
}

TEST_F(CancelTest, at_any_moment_of_a_start) {
    m_gateway.serve("/mediation", silent(Reply::hold));
    makeClient();
    for (int i = 0; i < 16; ++i) {
        ASSERT_TRUE(m_client->run(m_gateway.launchUrl()));
        for (int spins = i * 500; spins > 0; --spins)
            std::this_thread::yield();
        m_client->cancel();
        ASSERT_TRUE(m_client->join(bearableMs)) << i;
        expectCutOff();
    }
}

TEST_F(CancelTest, a_module_that_arrives_drop_by_drop) {
    servePlugin();
    m_gateway.serve("/modules/module.zip", m_endless);
    start();
    ASSERT_TRUE(m_gateway.server().awaitRequests(2));
    cancel();
    EXPECT_EQ(m_notify.lines().back(), "onFatalError ");
}

TEST_F(CancelTest, a_tunnel_is_stopped_and_before_its_module_is_loaded_none_is) {
    servePlugin();
    std::filesystem::create_directories(pluginDirectory());
    writeFile(String::copyOf(pluginDirectory() + "/script.txt"), R"([{"code":"5","status":"up"}])");
    start();
    ASSERT_TRUE(m_notify.await("onVpnStatus up"));
    cancel();
    ASSERT_EQ(m_notify.lines().back(), "onStatus 4");
    std::filesystem::remove(pluginDirectory() + "/calls.log");
    for (char const* const line : {"onDispatch 2", "onStatus 2"}) { // everything is installed by now
        cancelAt(line);
        ASSERT_TRUE(m_client->run(m_gateway.launchUrl()));
        EXPECT_TRUE(m_client->join(bearableMs)) << line;
        EXPECT_EQ(m_notify.lines().back(), "onStatus 4") << line;
        EXPECT_EQ(calls(pluginDirectory()), Lines{}) << line;
    }
}

TEST_F(CancelTest, a_host_check_between_two_rounds_and_during_a_post) {
    Reply const again = json(R"({"success":true,"result":{"continue":true}})");
    for (Reply const& reply : {again, silent(Reply::hold)}) {
        serveHostchecker();
        m_gateway.serve("/hostcheck", reply);
        auto const before = m_gateway.server().requests().size();
        m_client.reset();
        start();
        ASSERT_TRUE(m_gateway.server().awaitRequests(before + 3));
        cancel();
        EXPECT_EQ(m_notify.lines().back(), "onStatus 4");
        EXPECT_EQ(calls(dataDirectory() + "/hostchecker").back(), "CloseHostCheckerDll");
    }
}

TEST_F(CancelTest, restart_does_not_revive_the_session_that_ends) {
    servePlugin();
    m_gateway.serve("/certs/client.pem", silent(Reply::hold));
    start();
    ASSERT_TRUE(m_gateway.server().awaitRequests(3));
    EXPECT_FALSE(m_client->join(300)) << "it waits";
    m_client->cancel();
    m_client->restart();
    EXPECT_TRUE(m_client->join(bearableMs));
    EXPECT_EQ(m_notify.lines().back(), "onStatus 4");
    EXPECT_EQ(m_gateway.count("/certs/ca.pem"), 0u);
}

TEST_F(CancelTest, restart_and_run_begin_anew) {
    m_gateway.serve("/mediation", silent(Reply::hold));
    start();
    cancel();
    m_gateway.serve("/mediation", json(R"({"success":false,"exception":"reached"})"));
    m_client->restart();
    m_client->join();
    EXPECT_EQ(m_log->count("reached"), 1u);
    m_client->cancel();
    EXPECT_TRUE(m_client->run(m_gateway.launchUrl()));
    m_client->join();
    EXPECT_EQ(m_log->count("reached"), 2u);
}

/// The delegate as a module's own thread calls it, a slow download under way.
class ModuleDownload {
public:
    explicit ModuleDownload(FakeGateway& gateway, std::string const& directory)
        : m_thread([this, path = directory + "/slow"]() mutable {
              std::string url = "/slow";
              m_result = DownloadManager::StaticDownloadWrapper::downloadFileTo(url.data(), path.data());
          }) {
        EXPECT_TRUE(gateway.server().awaitRequests(2));
    }
    ~ModuleDownload() {
        m_thread.join();
        EXPECT_FALSE(m_result);
    }

private:
    bool m_result = true;
    std::thread m_thread;
};

TEST_F(CancelTest, what_a_modules_thread_fetches_stays_cut_off_and_is_not_outlived) {
    m_gateway.serve("/slow", m_endless);
    m_gateway.serve("/mediation", json(R"({"success":false})"));
    runSession();
    {
        ModuleDownload download(m_gateway, m_home.path());
        m_client->cancel();
        m_client->restart();
    }
    m_client->join();
    m_client.reset();
    makeClient();
    runSession();
    auto const before = m_gateway.count("/slow");
    ModuleDownload download(m_gateway, m_home.path());
    while (m_gateway.count("/slow") == before)
        std::this_thread::yield();
    m_client.reset(); // waits for the delegate's call
}

} // namespace

} // namespace quillon::test
