// Sessions that are cut off: whoever quits does not wait for the network.
#include "client/clientfixture.h"
#include "tarvikclient/downloadManager.h"

#include <filesystem>
#include <future>

namespace quillon::test {

namespace {

// About a second is promised; not cut off, each of these sessions would take a minute or an hour.
constexpr unsigned long bearableMs = 4000;

class CancelTest : public ClientTest {
protected:
    void start() {
        makeClient();
        m_client->run(m_gateway.launchUrl());
    }
    /// Cancels the session and expects its thread to end by that, and nobody to be told of a failure.
    void cancel() {
        m_client->cancel();
        EXPECT_TRUE(m_client->join(bearableMs));
        EXPECT_EQ(m_notify.lines().back(), "onStatus 4");
    }
    /// Serves what a session with a plug-in needs; the module goes on until it is stopped.
    void servePlugin() {
        m_gateway.serve("/certs/client.pem", "client");
        m_gateway.serve("/certs/ca.pem", "ca");
        m_gateway.serveResult(m_gateway.pluginConfiguration());
        serveModule("test_plugin");
    }

    Reply const m_endless = raw("HTTP/1.1 200 OK\r\n\r\n", Reply::trickle);
};

TEST_F(CancelTest, a_download_or_post_that_does_not_end) {
    Reply const mute = silent(Reply::hold);
    Reply const again = json(R"({"success":true,"result":{"continue":true}})");
    std::tuple<char const*, Reply, JsonObject, std::size_t> const cases[] = {
        {"/hostcheck", again, m_gateway.hostcheckerConfiguration(), 3}, // between two rounds
        {"/hostcheck", mute, m_gateway.hostcheckerConfiguration(), 3},
        {"/modules/module.zip", m_endless, m_gateway.pluginConfiguration(), 2},
        {"/modules/module.zip", m_endless, m_gateway.hostcheckerConfiguration(), 2},
        {"/mediation", mute, {}, 1},
    };
    for (auto const& [path, reply, configuration, requests] : cases) {
        SCOPED_TRACE(path);
        serveModule("test_hostchecker");
        m_gateway.serveResult(configuration);
        m_gateway.serve(path, reply);
        auto const before = m_gateway.server().requests().size();
        m_client.reset();
        start();
        ASSERT_TRUE(m_gateway.server().awaitRequests(before + requests));
        EXPECT_FALSE(m_client->join(100));
        cancel();
    }
    EXPECT_EQ(calls(dataDirectory() + "/hostchecker").back(), "CloseHostCheckerDll");
}

TEST_F(CancelTest, a_tunnel_is_stopped_and_before_its_module_is_loaded_none_is) {
    servePlugin();
    std::filesystem::create_directories(pluginDirectory());
    writeFile(String::copyOf(pluginDirectory() + "/script.txt"), R"([{"code":"5","status":"up"}])");
    start();
    ASSERT_TRUE(m_notify.await("onVpnStatus up"));
    cancel();
    std::filesystem::remove(pluginDirectory() + "/calls.log");
    for (char const* const line : {"onDispatch 2", "onStatus 2"}) { // everything is installed by now
        m_notify.onLine = [&](std::string const& notified) {
            if (notified == line)
                m_client->cancel();
        };
        ASSERT_TRUE(m_client->run(m_gateway.launchUrl()));
        EXPECT_TRUE(m_client->join(bearableMs)) << line;
        EXPECT_EQ(m_notify.lines().back(), "onStatus 4") << line;
        EXPECT_EQ(calls(pluginDirectory()), Lines{}) << line;
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

TEST_F(CancelTest, what_a_modules_thread_fetches_stays_cut_off_and_is_not_outlived) {
    m_gateway.serve("/slow", m_endless);
    m_gateway.serve("/mediation", json(R"({"success":false})"));
    std::string url = "/slow";
    std::string path = m_home.path() + "/slow";
    for (bool const restarts : {true, false}) {
        m_client.reset();
        runSession();
        auto const before = m_gateway.server().requests().size();
        // The delegate as a module's own thread calls it.
        auto download = std::async(std::launch::async, [&] {
            return DownloadManager::StaticDownloadWrapper::downloadFileTo(url.data(), path.data());
        });
        EXPECT_TRUE(m_gateway.server().awaitRequests(before + 1));
        if (restarts) {
            m_client->cancel();
            m_client->restart();
            m_client->join();
        } else
            m_client.reset(); // waits for the delegate's call
        EXPECT_FALSE(download.get());
    }
}

} // namespace

} // namespace quillon::test
