// What people are called and what they prove it with stays out of the log, whatever goes wrong.
#include "base/file.h"
#include "client/clientfixture.h"

#include <thread>

namespace quillon::test {

namespace {

class LogPrivacyTest : public ClientTest {
protected:
    /// Expects that nothing secret has been logged; every secret of these tests has one of the marks in it.
    void expectNoSecrets() const {
        std::string const text = m_log->text();
        for (char const* const mark : {"S3CRET", "USER7"})
            EXPECT_EQ(text.find(mark), std::string::npos) << text;
    }
};

TEST_F(LogPrivacyTest, a_whole_session_and_configurations_with_values_in_wrong_places) {
    JsonObject configuration = m_gateway.pluginConfiguration();
    configuration["login"] = quoted("USER7");
    for (char const* const key : {"certPassword", "ticket", "sessionid"})
        configuration[key] = quoted("S3CRET-" + std::string(key));
    configuration["certificates"] = toJson(
        {{"cert", toJson({{"filename", quoted("client.pem")},
                          {"urlpath", quoted("https://USER7:S3CRET@" + m_gateway.server().authority() +
                                             "/certs/?t=S3CRET&n=")}})},
         {"ca", toJson({{"filename", quoted("ca.pem")}, {"urlpath", quoted("https://h/?S3CRET#\\n@")}})}});
    serveModule("test_plugin");
    m_gateway.serveResult(configuration);
    makeClient();
    m_client->run(m_gateway.launchUrl("S3CRET-ticket") + "&user=USER7");
    ASSERT_TRUE(m_notify.await("onDispatch 2"));
    while (calls(pluginDirectory()).size() < 18 && m_client->isRunning())
        std::this_thread::yield();
    m_client->stop();
    m_client->join();
    EXPECT_EQ(m_notify.lines().back(), "onStatus 4");
    for (auto const& [key, value] : JsonObject{{"login", R"(["USER7"])"},
                                               {"ticket", R"({"S3CRET":"S3CRET"})"},
                                               {"certificates", quoted("S3CRET")},
                                               {"pluginDlls", R"({"mac":"S3CRET"})"}}) {
        JsonObject wrong = configuration;
        wrong[key] = value;
        m_gateway.serveResult(wrong);
        EXPECT_EQ(runSession().back(), "onFatalError ") << key;
    }
    for (char const* const body : {R"({"success":"S3CRET"})", R"({"success":true,"S3CRET":1})",
                                   R"({"success":true,"code":"S3CRET","result":{}})", "S3CRET", "{S3CRET"}) {
        m_gateway.serve("/mediation", json(body));
        EXPECT_EQ(runSession().back(), "onFatalError ") << body;
    }
    expectNoSecrets();
}

TEST_F(LogPrivacyTest, settings_files_and_launch_urls_that_are_broken_around_a_secret) {
    String const path = m_home.file("settings");
    restartLog();
    for (char const* const password :
         {"a<S3CRET", "a<S3CRET>", "a<S3CRET b='S3CRET", "a</S3CRET", "a</S3CRET>", "<!S3CRET", "<S3CRET:x/>",
          "S3CRET</password></credentials></proxy></tarvikclient>"}) {
        writeFile(path, std::string("<tarvikclient><proxy><credentials><login>USER7</login><password>") +
                            password + "</password></credentials></proxy></tarvikclient>");
        ClientLocalConfiguration settings;
        settings.readFromFile(path);
    }
    EXPECT_EQ(m_log->count("Can not read local configuration from "), 8u);
    TarvikClient::getLangFromArg("tarvik://S3CRET/ticket@h/?k=S3CRET#\n");
    expectNoSecrets();
}

} // namespace

} // namespace quillon::test
