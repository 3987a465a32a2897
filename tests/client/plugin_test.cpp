// Sessions with a plug-in module.
#include "client/clientfixture.h"
#include "tarvikclient/plugindllclient.h"
#include "tarvikclient/plugindllinstance.h"
#include "tarvikclient/policy.h"

#include <filesystem>

namespace quillon::test {

namespace {

class PluginTest : public ClientTest {
protected:
    PluginTest() {
        m_gateway.serve("/certs/client.pem", "client");
        m_gateway.serve("/certs/ca.pem", "ca");
        m_gateway.serve("/delegate/file", "by delegate");
        m_gateway.serveResult(m_gateway.pluginConfiguration());
        serveModule("test_plugin");
    }

    /// What the module's polls return.
    void script(std::string const& lines) {
        std::filesystem::create_directories(pluginDirectory());
        writeFile(String::copyOf(pluginDirectory() + "/script.txt"), lines);
    }
};

char const close[] = R"([{"code":"8","reason":"1"}])";
char const laterClose[] = R"([{"code":8,"reason":3}])"
                          "\n";

TEST_F(PluginTest, configures_starts_polls_and_stops_the_module_in_order) {
    writeFile(
        m_home.file(".Tarvik/tarvikclient.xml"),
        m_gateway.settings("<proxy><credentials><login>pl</login><password>pw</password><domain>pd</domain>"
                           "</credentials></proxy>"));
    std::string const first = R"([{"code":"5","status":"init"},{"code":"99"}])"
                              "\n";
    script(first + close);
    EXPECT_EQ(runSession(),
              (Lines{"onDispatch 2", "onStatus 2", "onVpnStatus init", "onVpnStatus ", "onStatus 4"}));

    std::string const proxy = "DllSetProxy2 1|no||pl|pw|pd|save:no\n";
    EXPECT_EQ(
        readFile(String::copyOf(pluginDirectory() + "/calls.log")),
        "DllCreatePluginFrontal\nDllSetDllVersion2 7.1\nDllSetPluginDir2 " + pluginDirectory() + "\n" +
            proxy + "DllSetLogin2 alice\nDllSetOrganization2 acme\nDllSetHostname2 " +
            m_gateway.server().authority() +
            "\nDllSetServer2 10.0.0.1\nDllSetSuffix2 client-4\nDllSetTicket2 ticket-2\n"
            "DllSetSessionId2 session-3\nDllSetCertDirectory2 " +
            pluginDirectory() +
            "/PKIs/acme\n"
            "DllSetCertFileName2 client.pem\nDllSetCaFileName2 ca.pem\nDllSetCertPassword2 cert-secret\n"
            "DllSetDownloadDelegate2 fetched\nDllStart2\n" +
            proxy + "DllGetErrors2 " + first + "DllGetErrors2 " + close +
            "\nDllStop2 all texts returned\nunload\n");
    EXPECT_EQ(readFile(m_home.file(".Tarvik/Plugin/PKIs/acme/client.pem")), "client");
    EXPECT_EQ(readFile(m_home.file(".Tarvik/Plugin/fetched/by-delegate")), "by delegate");
    // Components are fetched in the session of the launch URL.
    for (Request const& request : m_gateway.server().requests())
        EXPECT_EQ(request.header("Cookie"), "Tarvik-Id=ticket-1") << request.target;
}

TEST_F(PluginTest, six_requests_to_close_in_a_row_stop_it_and_a_pause_starts_the_count_again) {
    std::string five;
    for (int i = 0; i < 5; ++i)
        five += laterClose;
    script(five + "[]\n" + laterClose);
    runSession();
    auto const all = calls(pluginDirectory());
    EXPECT_EQ(std::count_if(all.begin(), all.end(),
                            [](auto const& line) { return line.starts_with("DllGetErrors2"); }),
              5 + 1 + 6);
    EXPECT_EQ(m_log->count("TRACE TarvikClientPluginDll.processPluginStatus closeRequest canceled"), 1u);
}

TEST_F(PluginTest, installed_files_are_used_again_and_verified_again) {
    script(close);
    runSession();
    runSession();
    EXPECT_EQ(m_gateway.count("/modules/module.zip"), 1u);
    EXPECT_TRUE(m_log->contains("plugindll.so.sig are already present."));
    EXPECT_EQ(m_notify.lines().back(), "onStatus 4");

    writeFile(String::copyOf(pluginDirectory() + "/plugindll.so"), "changed on the disk");
    EXPECT_EQ(runSession().back(), "onFatalError ");
    EXPECT_TRUE(m_log->contains("ERROR FileSignature.verify bad hash "));
    EXPECT_TRUE(m_log->contains("ERROR TarvikClient.verifyDllSignature Bad dll signature for " +
                                pluginDirectory() + "/plugindll.so"));
    EXPECT_TRUE(m_log->contains("ERROR TarvikClient.main Bad component signature"));
}

TEST_F(PluginTest, modules_that_do_not_verify_are_not_loaded) {
    std::string const module = readFile(testModule("test_plugin"));
    std::string const good = signatureOf(module);
    auto const with = [&](std::string const& from, std::string const& to) {
        std::string changed = good;
        return changed.replace(changed.find(from), from.size(), to);
    };
    std::pair<std::string, char const*> const cases[] = {
        {with("<name>test", "<name>tesu"), "FileSignature.verify bad signature"},
        {with("<version>1.0", "<version>1.1"), "FileSignature.verify bad signature"},
        {with("<signature>", "<signature>AAAA"), "FileSignature.verify bad signature"},
        {with("<sha256>", "<sha256>A"), "FileSignature.verify bad hash "},
        {signatureOf(module + "x"), "FileSignature.verify bad hash "},
        {"<dll><version>1</version></dll>", "SignedDll.loadFromFile Error while parsing signature"},
        {"", "SignedDll.loadFromFile Error while parsing signature"},
        {good + std::string(100000, ' '), "SignedDll.loadFromFile Error while parsing signature"},
    };
    for (auto const& [signature, logged] : cases) {
        m_gateway.serve("/modules/module.zip", zipOf({{"module.so", module}, {"module.so.sig", signature}}));
        std::filesystem::remove_all(pluginDirectory());
        restartLog();
        EXPECT_EQ(runSession().back(), "onFatalError ") << logged;
        EXPECT_TRUE(m_log->contains(logged)) << m_log->text();
        EXPECT_TRUE(calls(pluginDirectory()).empty()) << logged;
    }
}

TEST_F(PluginTest, modules_that_break_the_boundary_are_fatal) {
    std::pair<char const*, char const*> const cases[] = {
        {"test_plugin_missing_export",
         "ERROR ModuleLoader.ModuleLoader Unable to load \"LaunchSafeResource\": "},
        {"test_plugin_null_instance",
         "ERROR PluginDllInstance.PluginDllInstance Unable to create dll instance !"},
        {"test_plugin_throwing", "ERROR ModuleLoader.call An exception left the module's DllStart2"},
    };
    for (auto const& [module, logged] : cases) {
        serveModule(module);
        std::filesystem::remove_all(pluginDirectory());
        EXPECT_EQ(runSession().back(), "onFatalError ") << module;
        EXPECT_TRUE(m_log->contains(logged)) << module;
    }
}

TEST_F(PluginTest, status_texts_that_are_no_list_of_objects_are_fatal) {
    for (std::string const text : {"nonsense", "{}", "[1]", "[[]]", R"([{"code":{}}])"}) {
        script(text);
        EXPECT_EQ(runSession().back(), "onFatalError ") << text;
    }
    m_client.reset(); // what was started and not stopped stays in the process
    EXPECT_EQ(std::ranges::count(calls(pluginDirectory()), "unload"), 0);
}

TEST_F(PluginTest, an_organisation_that_would_leave_the_directory_gets_no_certificates) {
    script(close);
    JsonObject configuration = m_gateway.pluginConfiguration();
    configuration["orgname"] = quoted("../../..");
    m_gateway.serveResult(configuration);
    EXPECT_EQ(runSession().back(), "onStatus 4");
    EXPECT_EQ(m_gateway.count("/certs/ca.pem"), 0u);
    EXPECT_TRUE(
        m_log->contains("ERROR TarvikClientPluginDll.getCertDir Name leaves its directory: '../../..'"));
}

TEST_F(PluginTest, without_a_tunnel_the_module_launches_one_resource_and_is_not_started) {
    m_gateway.serveResult(m_gateway.noTunnelConfiguration());
    EXPECT_EQ(runSession(), (Lines{"onDispatch 4", "onStatus 4"}));
    EXPECT_EQ(
        calls(pluginDirectory()),
        (Lines{"DllCreatePluginFrontal", "DllSetDllVersion2 7.1", "DllSetPluginDir2 " + pluginDirectory(),
               "DllSetDownloadDelegate2 fetched", "LaunchSafeResource -5 the service", "unload"}));
}

TEST_F(PluginTest, texts_of_the_module_are_copied_and_returned) {
    String const path = m_home.file("module.so");
    writeFile(path, readFile(testModule("test_plugin")));
    writeFile(path + ".sig", signatureOf(readFile(path)));
    PluginDllInstance module(std::make_unique<VerifiedModule>(path, path + ".sig", Policy()), "1",
                             m_home.toString());
    EXPECT_EQ(module.getLogs(), "");
    EXPECT_EQ(module.execute("a", String("bcd").range(0, 2), "def"), 1 + 2 + 3);
    EXPECT_EQ(module.strResponse(nullptr), "");
    module.setProxy(false, Proxy());
    module.stop();
    auto const lines = calls(m_home.path());
    EXPECT_EQ(lines[lines.size() - 2], "DllSetProxy2 0|no|||||save:no");
    EXPECT_EQ(lines.back(), "DllStop2 all texts returned");
}

} // namespace

} // namespace quillon::test
