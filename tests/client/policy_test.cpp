// Sessions under an administrator's policy.
#include "client/clientfixture.h"
#include "support/testpolicy.h"
#include "tarvikclient/publisherkeys.h"

#include <filesystem>
#include <future>

namespace quillon::test {

namespace {

using Answer = GatewayQuestion::Answer;

/// Answers at once, or leaves the question open.
class Consent final : public IGatewayConsent {
public:
    explicit Consent(std::optional<Answer> answer) : m_answer(answer) {}

    void ask(std::shared_ptr<GatewayQuestion> const& question) override {
        asked.emplace_back(question->gateway().toString(gatewayPort).view());
        if (m_answer)
            question->answer(*m_answer);
        if (onAsked)
            onAsked();
    }

    std::vector<std::string> asked;
    std::function<void()> onAsked;

private:
    std::optional<Answer> const m_answer;
};

class PolicyTest : public ClientTest {
protected:
    PolicyTest() {
        m_gateway.serveResult(m_gateway.noTunnelConfiguration());
        serveModule("test_plugin");
    }
    std::string gateways(std::string const& others, std::string const& allowed = "gate.example") const {
        return "<gateways><allowed>" + allowed + "</allowed><others>" + others + "</others></gateways>";
    }
    std::string gatewaysWithThis(std::string const& others) {
        return gateways(others, m_gateway.server().authority());
    }
    std::string auditLine(std::string const& outcome, std::string const& module = "") {
        return "session gateway=\"" + m_gateway.server().authority() + "\"" + module + " outcome=\"" +
               outcome + "\"";
    }

    TestPolicy m_policy;
};

Lines const fatal{"onFatalError "};
Lines const session{"onDispatch 4", "onStatus 4"};

TEST_F(PolicyTest, without_a_manifest_no_companion_is_installed_nor_stays) {
    std::string const content = readFile(testModule("test_plugin"));
    m_gateway.serve(
        "/modules/module.zip",
        zipOf({{"module.so", content}, {"module.so.sig", signatureOf(content)}, {"companion.so", "x"}}));
    std::string const companion = pluginDirectory() + "/companion.so";
    EXPECT_EQ(runSession().back(), "onStatus 4");
    EXPECT_TRUE(std::filesystem::exists(companion));
    m_policy.write(gatewaysWithThis("refuse") + "<companions>manifest</companions>");
    for (bool const present : {true, false}) {
        EXPECT_EQ(runSession().back(), "onStatus 4") << present;
        EXPECT_FALSE(std::filesystem::exists(companion)) << present;
        std::filesystem::remove(pluginDirectory() + "/plugindll.so");
    }
}

TEST_F(PolicyTest, decides_before_the_first_request) {
    std::string const authority = m_gateway.server().authority();
    std::string const module = " module=\"test\" sha256=\"" +
                               std::string(SignedDll::hashFile(testModule("test_plugin")).view()) + "\"";
    std::tuple<char const*, std::string, std::optional<Answer>, bool, Lines, std::string> const cases[] = {
        {"allowed", gatewaysWithThis("refuse"), {}, false, session, auditLine("finished", module)},
        {"others allowed", gateways("allow"), {}, false, session, auditLine("finished", module)},
        {"others refused", gateways("refuse"), Answer::yes, false, fatal, auditLine("refused")},
        {"nobody to ask", gateways("ask"), {}, false, fatal, auditLine("denied")},
        {"yes", gateways("ask"), Answer::yes, true, session, auditLine("finished", module)},
        {"no", gateways("ask"), Answer::no, true, fatal, auditLine("denied")},
        {"not understood", "<gateways/>", Answer::yes, false, fatal,
         R"(session gateway="" outcome="refused")"},
    };
    for (auto const& [what, rules, answer, isAsked, expected, audit] : cases) {
        SCOPED_TRACE(what);
        std::size_t const before = m_notify.lines().size(), requests = m_gateway.server().requests().size();
        m_policy.write(rules);
        Consent consent(answer);
        m_consent = answer ? &consent : nullptr;
        m_client.reset();
        auto const lines = runSession();
        EXPECT_EQ(Lines(lines.begin() + static_cast<long>(before), lines.end()), expected);
        EXPECT_EQ(consent.asked, isAsked ? Lines{authority} : Lines{});
        EXPECT_EQ(m_gateway.server().requests().size() > requests, expected == session);
        EXPECT_EQ(m_audit.back(), audit);
        EXPECT_EQ(m_client->getFailure().kind, expected == session             ? FailureKind::none
                                               : audit.ends_with("\"denied\"") ? FailureKind::notAgreed
                                                                               : FailureKind::policy);
    }
    EXPECT_EQ(m_audit.size(), std::size(cases));
}

TEST_F(PolicyTest, hosts_that_could_be_taken_for_others_are_refused_and_never_asked_about) {
    Consent consent(Answer::yes);
    m_consent = &consent;
    m_policy.write(gatewaysWithThis("ask"));
    // An international one is asked about and reached by its ASCII name.
    runSession("tarvik://t@b\u00FCcher.invalid:8443/mediation");
    EXPECT_EQ(m_client->getMediation(), "xn--bcher-kva.invalid:8443");
    std::string const authority = m_gateway.server().authority();
    for (std::string const& host : {"a@" + authority, "%31" + authority.substr(1), authority + ":"}) {
        auto const before = m_notify.lines().size();
        EXPECT_EQ(runSession(String::copyOf("tarvik://t@" + host + "/mediation")).back(), fatal[0]) << host;
        EXPECT_EQ(m_notify.lines().size(), before + 1);
    }
    EXPECT_EQ(consent.asked, Lines{"xn--bcher-kva.invalid:8443"});
    EXPECT_TRUE(m_gateway.server().requests().empty());
}

TEST_F(PolicyTest, an_open_question_ends_with_the_session) {
    m_policy.write(gateways("ask"));
    for (bool const stops : {true, false}) {
        Consent consent({});
        m_consent = &consent;
        m_client.reset();
        makeClient();
        std::promise<void> asked;
        consent.onAsked = [&] { asked.set_value(); };
        m_client->run(m_gateway.launchUrl());
        ASSERT_EQ(asked.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
        EXPECT_FALSE(m_client->join(100)) << "nobody has answered";
        stops ? m_client->stop() : m_client->cancel();
        EXPECT_TRUE(m_client->join(5000)) << stops;
        EXPECT_EQ(m_notify.lines().back(), "onStatus 4") << stops;
        EXPECT_EQ(m_audit.back(), auditLine("stopped")) << stops;
        m_client.reset();
    }
    EXPECT_TRUE(m_gateway.server().requests().empty());
}

TEST_F(PolicyTest, certificate_exceptions_can_be_refused) {
    m_policy.write("<certificateexceptions>refuse</certificateexceptions>");
    EXPECT_EQ(runSession().back().find("onConnectError Code: 60("), 0u);
    EXPECT_EQ(m_audit.back(), auditLine("unreachable"));
    EXPECT_FALSE(m_client->allowsCertificateExceptions());
}

TEST_F(PolicyTest, an_allowed_gateway_sends_nobody_elsewhere_where_others_are_refused) {
    FakeGateway other;
    other.serve("/hostcheck", json(R"({"success":true,"result":{}})"));
    other.serve("/modules/module.zip", signedArchive("module.so", readFile(testModule("test_hostchecker"))));
    serveModule("test_hostchecker");
    m_gateway.serve("/hostcheck", json(R"({"success":true,"result":{}})"));
    JsonObject const own = m_gateway.hostcheckerConfiguration();
    JsonObject answers = own, modules = own;
    answers["responseurl"] = quoted(other.server().url("/hostcheck"));
    modules["hostcheckerDlls"] = FakeGateway::modules(
        {{"urlpath", quoted(other.server().url("/modules/"))}, {"version", quoted("8")}});
    m_policy.write(gatewaysWithThis("refuse"));
    std::pair<JsonObject, char const*> const cases[] = {
        {own, "onStatus 4"}, {answers, "onFatalError "}, {modules, "onFatalError "}};
    for (auto const& [configuration, last] : cases) {
        m_gateway.serveResult(configuration);
        EXPECT_EQ(runSession().back(), last);
    }
    EXPECT_TRUE(other.server().requests().empty());
}

TEST_F(PolicyTest, modules_are_refused_by_key_and_by_date) {
    auto const since = [](std::string const& year) {
        return "<modules><module><name>test</name><signedsince>" + year +
               "-01-01T00:00:00Z</signedsince></module></modules>";
    };
    std::string const key(keyFingerprint(publisherKeyPems().front()).view());
    std::tuple<std::string, std::string, std::string> const cases[] = {
        {"<refusedkeys><sha256>" + key + "</sha256></refusedkeys>", "onFatalError ", "bad signature"},
        {since("2999"), "onFatalError ", "is refused: its signature counts from 2999-01-01T00:00:00Z on"},
        {since("2020"), "onStatus 4", ""},
    };
    for (auto const& [rules, last, logged] : cases) {
        m_policy.write(rules);
        restartLog();
        EXPECT_EQ(runSession().back(), last) << rules;
        EXPECT_EQ(m_log->count(logged.empty() ? "Bad component signature" : logged), logged.empty() ? 0u : 1u)
            << rules;
    }
}

TEST(SessionAudit, a_line_is_one_bounded_line_without_a_ticket) {
    std::string line;
    SessionAudit audit([&](String const& written) { line = written.view(); });
    audit.begin();
    audit.setGateway("ticket@a@gate.example\r\n\x1B[31m\"\\\xE2\x80\xAE%s");
    audit.setModule("two\nlines", "Ab+/=");
    audit.setOutcome("finished");
    audit.write();
    EXPECT_EQ(line, "session gateway=\"gate.example\\x0D\\x0A\\x1B[31m\\x22\\x5C\\xE2\\x80\\xAE%s\" "
                    "module=\"two\\x0Alines\" sha256=\"Ab+/=\" outcome=\"finished\"");
    std::string const huge(1024 * 1024, '\n');
    audit.begin();
    audit.setGateway(String::copyOf(huge));
    for (int i = 0; i < 1000; ++i)
        audit.setModule(String::copyOf(huge), "");
    audit.write();
    EXPECT_LE(line.size(), 2048u);
}

} // namespace

} // namespace quillon::test
