// The pass from the launch URL to its outcome.
#include "base/confhelper.h"
#include "base/file.h"
#include "client/clientfixture.h"

#include <filesystem>

namespace quillon::test {

namespace {

class SessionTest : public ClientTest {};

Lines const fatal{"onFatalError "};

TEST_F(SessionTest, asks_the_mediation_service_once_with_version_cookie_and_agent) {
    m_gateway.serve("/mediation", json(R"({"success":false,"exception":"not today"})"));
    EXPECT_EQ(runSession(), fatal);
    EXPECT_TRUE(m_log->contains("ERROR TarvikClient.main not today"));

    auto const requests = m_gateway.server().requests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].method, "GET");
    EXPECT_EQ(requests[0].target, "/mediation?clientversion=8.2.0.21&lang=en");
    EXPECT_EQ(requests[0].header("Cookie"), "Tarvik-Id=ticket-1");
    EXPECT_EQ(requests[0].header("User-Agent").find("TarvikClient 8.2.0.21 "), 0u);
    EXPECT_EQ(m_client->getMediation(), String::copyOf(m_gateway.server().authority()));
}

TEST_F(SessionTest, sends_the_ticket_whole_or_an_empty_cookie_and_the_path_as_it_came) {
    for (std::string const& ticket : Lines{"", "a,b", "a\"b", "a=b", "a%09b", std::string(4000, 't')}) {
        std::string const user = ticket.empty() ? "" : ticket + "@";
        std::string const url = "tarvik://" + user + m_gateway.server().authority() + "/a%20b%2Fc";
        EXPECT_EQ(runSession(String::copyOf(url)).back(), fatal[0]);
        Request const request = m_gateway.server().requests().back();
        EXPECT_EQ(request.path(), "/a%20b%2Fc");
        EXPECT_TRUE(request.hasHeader("Cookie"));
        EXPECT_EQ(request.header("Cookie"), "Tarvik-Id=" + ticket);
    }
}

TEST_F(SessionTest, goes_on_after_a_status_that_is_not_200) {
    serveModule("test_plugin");
    std::string const body =
        toJson({{"success", "true"}, {"result", toJson(m_gateway.noTunnelConfiguration())}});
    m_gateway.serve("/mediation", status(500, body));
    EXPECT_EQ(runSession(), (Lines{"onDispatch 4", "onStatus 4"}));
    EXPECT_TRUE(m_log->contains("ERROR TarvikClient.main mediation response is HTTP.500"));
}

TEST_F(SessionTest, replies_that_are_no_configuration_are_fatal) {
    std::string const deep(100000, '[');
    std::string const large = R"({"success":true,"result":")" + std::string(4'000'000, 'x') + "\"}";
    for (std::string const& body : Lines{"",
                                         "<html>",
                                         "{\"success\":tru",
                                         "[]",
                                         "null",
                                         "1",
                                         "{}",
                                         std::string("\xFF\xFE{\0}\0", 6),
                                         R"({"success":null})",
                                         R"({"success":[]})",
                                         R"({"success":"yes","result":{}})",
                                         R"({"success":true})",
                                         R"({"success":true,"result":null})",
                                         R"({"success":true,"result":[1]})",
                                         R"({"success":true,"result":{}})",
                                         R"({"success":true,"result":{"type":"PluginDll"}})",
                                         R"({"success":true,"result":{"type":{}}})",
                                         deep,
                                         "{\"success\":" + deep,
                                         large}) {
        m_gateway.serve("/mediation", body);
        auto const before = m_notify.lines().size();
        EXPECT_EQ(runSession().size(), before + 1) << body.substr(0, 100);
        EXPECT_EQ(m_notify.lines().back(), fatal[0]) << body.substr(0, 100);
    }
    EXPECT_TRUE(m_log->contains("ERROR ClientConfiguration.load Unknown configuration type: PluginDll"));
    EXPECT_TRUE(m_log->contains("EMediationResponse:client.cpp:59 -> client.cpp:155"));
}

TEST_F(SessionTest, a_fatal_error_has_a_kind_until_the_next_session_starts) {
    std::string const plugin =
        toJson({{"success", "true"}, {"result", toJson(m_gateway.pluginConfiguration())}});
    std::string const check =
        toJson({{"success", "true"}, {"result", toJson(m_gateway.hostcheckerConfiguration())}});
    std::string const words = "\xE2\x80\xAEno " + std::string(2000, '%');
    struct {
        FailureKind kind;
        Reply reply, archive = status(404);
        unsigned httpStatus = 0;
    } const cases[] = {
        {FailureKind::refusedByGateway, json(R"({"success":false,"exception":")" + words + "\"}")},
        {FailureKind::refusedByGateway, status(500, R"({"success":false})"), {}, 500},
        {FailureKind::gatewayError, status(503, "<html>"), {}, 503},
        {FailureKind::replyNotUnderstood, json("{}")},
        {FailureKind::replyNotUnderstood, json(R"({"success":true,"result":{"type":"other"}})")},
        {FailureKind::moduleNotFetched, json(plugin)},
        {FailureKind::moduleNotFetched, json(check)},
        {FailureKind::moduleNotFetched, status(500, plugin), status(404), 500},
        {FailureKind::badSignature, json(plugin),
         ok(zipOf({{"module.so", "x"}, {"module.so.sig", signatureOf("y")}}))},
        {FailureKind::moduleNotLoadable, json(plugin), ok(signedArchive("module.so", "no library"))},
    };
    for (auto const& row : cases) {
        m_gateway.serve("/mediation", row.reply);
        m_gateway.serve("/modules/module.zip", row.archive);
        EXPECT_EQ(runSession().back(), fatal[0]);
        SessionFailure const failure = m_client->getFailure();
        EXPECT_EQ(static_cast<int>(failure.kind), static_cast<int>(row.kind))
            << row.reply.bytes.substr(0, 300);
        EXPECT_EQ(failure.httpStatus, row.httpStatus);
        EXPECT_LT(failure.gatewaysWords.length(), 1010u);
        EXPECT_EQ(failure.gatewaysWords.starts("\xE2\x80\xAEno %"), &row == cases);
    }
    runSession("tarvik://");
    EXPECT_EQ(m_client->getFailure().kind, FailureKind::badLink);
    m_gateway.serve("/mediation", silent(Reply::reset));
    EXPECT_EQ(runSession().back().find("onConnectError"), 0u);
    EXPECT_EQ(m_client->getFailure().kind, FailureKind::none);
}

TEST_F(SessionTest, each_key_of_each_configuration_is_required_and_of_its_type) {
    makeClient();
    for (JsonObject const& complete : {m_gateway.pluginConfiguration(), m_gateway.noTunnelConfiguration(),
                                       m_gateway.hostcheckerConfiguration()})
        for (auto const& [key, value] : complete)
            for (std::string const spoiled : {"", "[[]]", "null"}) {
                JsonObject configuration = complete;
                spoiled.empty() ? void(configuration.erase(key)) : void(configuration[key] = spoiled);
                m_gateway.serveResult(configuration);
                // A list where modules are due is a record without any, and fails when it comes to loading.
                EXPECT_EQ(runSession().back(), fatal[0]) << key << " " << spoiled;
            }
    EXPECT_TRUE(m_log->contains("ERROR ConfReadHelper.readKey Missing tag: <sessionid>"));
    EXPECT_TRUE(m_log->contains("ERROR ConfReadHelper.readKey Error while reading key: \"service\""));
    EXPECT_EQ(m_gateway.count("/modules/module.zip"), 0u);
}

TEST_F(SessionTest, transfers_that_fail_are_connect_errors) {
    std::pair<char const*, Reply> const cases[] = {
        {"reset", silent(Reply::reset)},
        {"closed", silent(Reply::close)},
        {"cut off", raw("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n{\"success\"")},
        {"no HTTP", raw("hello\r\n")},
        {"too long", ok(std::string((4 << 20) + 1, ' '))},
    };
    for (auto const& [what, reply] : cases) {
        m_gateway.serve("/mediation", reply);
        EXPECT_EQ(runSession().back().find("onConnectError Code: "), 0u) << what;
    }
    EXPECT_EQ(m_notify.lines().size(), std::size(cases));
}

// libcurl would find a host in most of these, and where the client found none or another one; and it would
// leave out a ticket that it cannot send.
TEST_F(SessionTest, nothing_is_asked_of_another_gateway_or_without_the_ticket) {
    std::string const gateway = m_gateway.server().authority();
    std::string const port = gateway.substr(gateway.find(':'));
    writeFile(m_home.file(".Tarvik/tarvikclient.xml"), // an exception for the host that no URL has, too
              "<tarvikclient><sslcertignoredomains><domains>" + gateway +
                  "</domains><domains></domains></sslcertignoredomains></tarvikclient>");
    makeClient();
    for (std::string url : Lines{"tarvik:/G/",
                                 "tarvik:///G/",
                                 "tarvik:////G/",
                                 "https:///G/",
                                 "tarvik://SECRET@/G/",
                                 "tarvik:G/",
                                 "/G/",
                                 "tarvik://",
                                 "tarvik:",
                                 "x",
                                 "tarvik://P/",
                                 "tarvik://SECRET@P/",
                                 "tarvik://SECRET@:443/G",
                                 "tarvik://SECRET@x@G/",
                                 "tarvik://SECRET@%3127.0.0.1P/",
                                 "tarvik://SECRET@127.1P/",
                                 "tarvik://SECRET@G\\@other.example/",
                                 "tarvik://SECRET" + std::string(4096, 't') + "@G/",
                                 "tarvik://SECRET\tx@G/",
                                 "tarvik://SECRET;x@G/",
                                 "tarvik://SECRET @G/",
                                 "tarvik://SECRET\x01@G/"}) {
        if (std::size_t const at = url.find_first_of("GP"); at != std::string::npos)
            url.replace(at, 1, url[at] == 'G' ? gateway : port);
        std::size_t const errors = m_log->count(" ERROR ");
        EXPECT_EQ(runSession(String::copyOf(url)).back(), fatal[0]) << url;
        EXPECT_EQ(m_log->count(" ERROR "), errors + 1) << url << m_log->text();
    }
    EXPECT_TRUE(m_gateway.server().requests().empty());
    EXPECT_FALSE(m_log->contains("SECRET")) << m_log->text();
}

TEST_F(SessionTest, a_url_that_goes_away_is_kept) {
    m_gateway.serve("/mediation", json(R"({"success":false})"));
    makeClient();
    {
        std::string const passing(m_gateway.launchUrl().view());
        m_client->run(String(passing.c_str()));
    }
    m_client->join();
    m_client->restart();
    m_client->join();
    EXPECT_EQ(m_gateway.count("/mediation"), 2u);
}

TEST_F(SessionTest, language_of_a_launch_url) {
    EXPECT_EQ(TarvikClient::getLangFromArg("tarvik://t@h/p?lang=de&x=1"), "de");
    EXPECT_EQ(TarvikClient::getLangFromArg("tarvik://t@h/p"), "");
    EXPECT_EQ(TarvikClient::getLangFromArg("tarvik://h#\n?lang=de"), "");
}

TEST_F(SessionTest, data_directory_is_private_and_current) {
    makeClient();
    EXPECT_EQ(std::filesystem::status(dataDirectory()).permissions(), std::filesystem::perms::owner_all);
    EXPECT_EQ(std::filesystem::current_path(), std::filesystem::canonical(dataDirectory()));
}

TEST_F(SessionTest, settings_that_are_saved_are_those_of_the_next_client) {
    makeClient();
    m_client->getLocalConfiguration().setProxyCredentials(Credentials("l", "p", "d"));
    m_client->saveLocalConfiguration();
    m_client.reset();
    makeClient();
    EXPECT_EQ(m_client->getLocalConfiguration().getProxyCredentials(), Credentials("l", "p", "d"));
    EXPECT_EQ(m_client->getLocalConfiguration().getSslCertIgnoreDomains().size(), 1u);
}

TEST_F(SessionTest, construction_fails_in_order) {
    writeFile(
        m_home.file(".Tarvik/tarvikclient.xml"),
        "<tarvikclient><proxy><credentials><password>p</password></credentials></proxy></tarvikclient>");
    makeClient(); // such a file can only be mended with the client's help
    EXPECT_TRUE(m_client->getLocalConfiguration().isFileUnreadable());
    setenv("HOME", "/dev/null", 1);
    EXPECT_THROW(makeClient(), EFile);
}

} // namespace

} // namespace quillon::test
