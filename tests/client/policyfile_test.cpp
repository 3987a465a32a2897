// The policy's file: who may have written it, and what it may say.
#include "tarvikclient/policyfile.h"

#include "openssl/rsa_wrapper.h"
#include "support/logcapture.h"
#include "support/testpolicy.h"
#include "tarvikclient/policy.h"
#include "tarvikclient/publisherkeys.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

namespace quillon::test {

namespace {

std::string const fingerprint(64, 'a');

PolicyRules rulesOf(std::string const& text) {
    return readPolicyRules(String::copyOf(text), "policy.xml");
}

/// A gateways element.
std::string gateways(std::string const& allowed, std::string const& others = "refuse") {
    return "<gateways><allowed>" + allowed + "</allowed><others>" + others + "</others></gateways>";
}

GatewayDecision decide(std::string const& rules, char const* gateway) {
    return Policy(rulesOf("<policy>" + rules + "</policy>"))
        .decideOn(*http::HostPort::parse(gateway, gatewayPort));
}

std::string oldest(std::string const& name, std::string const& date) {
    return "<modules><module><name>" + name + "</name><signedsince>" + date +
           "</signedsince></module></modules>";
}

TEST(PolicyFile, is_none_only_where_nothing_stands) {
    TestPolicy policy;
    EXPECT_FALSE(readPolicyFile(policy.place()));
    EXPECT_FALSE(readPolicyFile({"/nonexistent/directory/policy.xml", geteuid()}));
    policy.write("");
    EXPECT_EQ(readPolicyFile(policy.place()), "<policy></policy>");
}

TEST(PolicyFile, must_be_a_plain_file_of_its_owners_alone) {
    namespace fs = std::filesystem;
    struct Place {
        TestPolicy policy;
        std::string const file{policy.path().view()};
        std::string const directory = fs::path(file).parent_path();
        PolicyPlace place = policy.place();
    };
    std::pair<char const*, std::function<void(Place&)>> const cases[] = {
        {"cannot be opened: ", [](Place& p) { fs::create_symlink("/etc/passwd", p.file); }},
        {"cannot be opened: ", [](Place& p) { fs::create_symlink("nothing", p.file); }},
        {"is not a plain file", [](Place& p) { ASSERT_EQ(mkfifo(p.file.c_str(), 0600), 0); }},
        {"is not a plain file", [](Place& p) { fs::create_directory(p.file); }},
        {"writable by others", [](Place& p) { p.policy.write(""), chmod(p.file.c_str(), 0664); }},
        {"writable by others", [](Place& p) { p.policy.write(""), chmod(p.file.c_str(), 0646); }},
        {"its directory is writable by others", [](Place& p) { chmod(p.directory.c_str(), 0770); }},
        {"its directory is writable by others", [](Place& p) { chmod(p.directory.c_str(), 01777); }},
        {"its directory belongs to user ", [](Place& p) { ++p.place.owner; }},
        {"is too large", [](Place& p) { p.policy.write(std::string(64 * 1024, ' ')); }},
        {"cannot be opened: ", [](Place& p) { p.place.path = "/etc/passwd/policy.xml"; }},
    };
    for (auto const& [reason, spoil] : cases) {
        LogCapture const log;
        Place place;
        spoil(place);
        EXPECT_THROW(readPolicyFile(place.place), EPolicy) << reason;
        EXPECT_TRUE(log.contains(reason)) << log.text();
    }
}

TEST(PolicyFile, says_all_that_a_policy_can_say) {
    PolicyRules const rules = rulesOf(
        "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!-- a comment -->\n<policy>\n"
        " <gateways>\n  <allowed> Gate.Example </allowed><!-- and -->\n  "
        "<allowed>*.corp.example:8443</allowed>\n"
        "  <others>ask</others>\n </gateways>\n <certificateexceptions>refuse</certificateexceptions>\n"
        " <companions>manifest</companions>\n "
        "<modules><module><signedsince>2026-01-01T00:00:00Z</signedsince>"
        "<name>a &amp; b</name></module></modules>\n <refusedkeys><sha256>" +
        std::string(64, 'A') + "</sha256><sha256>" + std::string(64, '0') +
        "</sha256></refusedkeys>\n</policy>\n");
    ASSERT_EQ(rules.allowed.size(), 2u);
    EXPECT_EQ(rules.allowed[0].toString(), "gate.example");
    EXPECT_EQ(rules.allowed[1].toString(), "*.corp.example:8443");
    EXPECT_EQ(rules.others, GatewayDecision::ask);
    EXPECT_FALSE(rules.certificateExceptions);
    EXPECT_TRUE(rules.companionsOnlyByManifest);
    ASSERT_EQ(rules.signedSince.size(), 1u);
    EXPECT_EQ(rules.signedSince[0].name, "a & b");
    EXPECT_EQ(rules.signedSince[0].since, DateTime(1767225600));
    ASSERT_EQ(rules.refusedKeys.size(), 2u);
    EXPECT_EQ(rules.refusedKeys[0], String::copyOf(fingerprint));
}

TEST(PolicyFile, an_empty_policy_changes_nothing) {
    for (char const* const text : {"<policy/>", "<policy><modules/><refusedkeys/></policy>"}) {
        PolicyRules const rules = rulesOf(text);
        EXPECT_EQ(rules.others, GatewayDecision::allow);
        EXPECT_TRUE(rules.certificateExceptions);
        EXPECT_FALSE(rules.companionsOnlyByManifest);
    }
}

TEST(PolicyFile, what_is_not_understood_is_refused) {
    std::string deep;
    for (int i = 0; i < 9000; ++i)
        deep += "<a>";
    for (std::string const& text :
         {std::string(), std::string(" "), std::string("policy"), std::string("<policy>"),
          std::string("<policy/><policy/>"), std::string("<Policy/>"),
          std::string("<p:policy xmlns:p=\"u\"/>"), std::string("<!DOCTYPE policy><policy/>"), deep,
          "<policy>" + deep, std::string("<policy version=\"1\"/>")})
        EXPECT_THROW(rulesOf(text), EPolicy) << text.substr(0, 100);
    for (std::string const& rules : std::vector<std::string>{
             "text", "<others>ask</others>", "<gateways/>",
             "<gateways><allowed>gate.example</allowed></gateways>",
             "<Gateways><others>ask</others></Gateways>", "<gateways others=\"ask\"/>",
             "<gateways><others>ask</others>gate.example</gateways>",
             "<gateways><others>ask</others><others>ask</others></gateways>", gateways("a") + gateways("b"),
             "<companions>manifest</companions><companions>any</companions>",
             "<companions>manifests</companions>", "<companions/>", "<companions><manifest/></companions>",
             "<companions a=\"b\">manifest</companions>",
             "<certificateexceptions>false</certificateexceptions>",
             "<refusedkeys><sha256>" + fingerprint.substr(1) + "</sha256></refusedkeys>",
             "<refusedkeys><sha256>g" + fingerprint.substr(1) + "</sha256></refusedkeys>",
             "<modules><module><name>a</name></module></modules>", oldest("", "2026-01-01T00:00:00Z")})
        EXPECT_THROW(decide(rules, "x"), EPolicy) << rules;
    for (char const* const others : {"Ask", "asks", "", "ask ask", "yes"})
        EXPECT_THROW(decide(gateways("gate.example", others), "x"), EPolicy) << others;
    for (char const* const pattern :
         {"", "*", "*.", "*example", "gate.*", "*.*.example", "gate.example/", "https://gate.example",
          "a@gate.example", "gate.example:*", "gate.example:0", "*.127.0.0.1", "*.[::1]", "gate example",
          "gate.example,b.example"})
        EXPECT_THROW(decide(gateways(pattern), "x"), EPolicy) << pattern;
    for (char const* const date : {"", "2026-01-01", "2026-1-1T00:00:00Z", "2026-02-30T00:00:00Z",
                                   "2026-01-01T24:00:00Z", "2026-01-01T00:00:00", "2026-01-01T00:00:00Zx",
                                   "2026-01-01 00:00:00Z", "20260-01-01T00:00:00Z", "yesterday"})
        EXPECT_THROW(decide(oldest("a", date), "x"), EPolicy) << date;
}

TEST(Policy, decides_on_gateways_by_name_and_port) {
    std::tuple<char const*, char const*, bool> const cases[] = {
        {"gate.example", "gate.example", true},
        {"gate.example", "GATE.example.:443", true},
        {"gate.example", "gate.example:8443", false},
        {"gate.example", "a.gate.example", false},
        {"gate.example", "gate.example.evil", false},
        {"gate.example.:8443", "gate.example:8443", true},
        {"*.corp.example", "a.corp.example", true},
        {"*.corp.example", "a.b.Corp.example.", true},
        {"*.corp.example", "corp.example", false},
        {"*.corp.example", "evilcorp.example", false},
        {"*.corp.example", "a.corp.example:444", false},
        {"*.corp.example:444", "a.corp.example:444", true},
        {"b\u00FCcher.example", "xn--bcher-kva.example", true},
        {"[::1]", "[0:0::1]", true}};
    for (auto const& [pattern, gateway, listed] : cases)
        EXPECT_EQ(decide(gateways(pattern), gateway),
                  listed ? GatewayDecision::allow : GatewayDecision::refuse)
            << pattern << " " << gateway;
}

TEST(Policy, where_others_are_refused_no_request_goes_elsewhere) {
    Policy const policy(rulesOf("<policy>" + gateways("gate.example") + "</policy>"));
    std::pair<char const*, bool> const cases[] = {
        {"https://gate.example/a", true},
        {"HTTPS://user@Gate.Example:443/a?b#c", true},
        {"https://other.example/", false},
        {"http://gate.example/", false}, // another port
        {"https://gate.example@other.example/", false},
        {"https:/gate.example/", false},
    };
    for (auto const& [url, allowed] : cases)
        EXPECT_EQ(policy.allowsRequest(url), allowed) << url;
    for (char const* const others : {"ask", "allow"})
        EXPECT_TRUE(Policy(rulesOf("<policy>" + gateways("a", others) + "</policy>"))
                        .allowsRequest("https://other.example/"));
}

// A signature covers version, name and date as one text.
TEST(Policy, the_oldest_date_holds_wherever_the_bounds_of_a_record_are_moved) {
    Policy const policy(rulesOf("<policy>" + oldest("plugin", "2026-01-01T00:00:00Z") + "</policy>"));
    std::tuple<char const*, char const*, char const*, bool> const cases[] = {
        {"1.0", "plugin", "2026-01-01T00:00:00Z", true},  {"1.0", "plugin", "2025-12-31T23:59:59Z", false},
        {"1.0", "other", "2020-01-01T00:00:00Z", true},   {"1.0p", "lugin", "2025-12-31T23:59:59Z", false},
        {"1", ".0plugin", "2025-12-31T23:59:59Z", false}, {"1.0plugin", "", "2025-12-31T23:59:59Z", false},
        {"1.0", "plugi", "n2025-12-31T23:59:59Z", false}, {"1.0", "plugin2", "025-12-31T23:59:59Z", false},
        {"1.0", "plugin2025-12-31T23:59:59Z", "", false}, {"1.0", "other", "whenever", false},
        {"1.0", "plugin20", "25-12-31T23:59:59Z", false},
    };
    for (auto const& [version, name, date, accepted] : cases) {
        DllInfos record;
        record.version = version;
        record.name = name;
        record.signdate = date;
        EXPECT_EQ(policy.acceptsModule(record), accepted) << version << " " << name << " " << date;
        EXPECT_TRUE(Policy().acceptsModule(record));
    }
}

TEST(PublisherKeys, any_key_verifies_that_is_not_refused) {
    tls::RSA keys[3];
    std::vector<String> pems;
    for (tls::RSA& key : keys) {
        key.generateKey(1024);
        pems.push_back(key.toPem(true));
    }
    PolicyRules rules;
    rules.refusedKeys.push_back(keyFingerprint(pems[1].str()));
    PublisherKeys both(Policy(), {pems[0].str(), pems[1].str()});
    PublisherKeys first(Policy(rules), {pems[0].str(), pems[1].str()});
    PublisherKeys none(Policy(rules), {pems[1].str()});
    Memory const data("module", 6);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(both.verify(data, keys[i].sign(data)), i < 2) << i;
        EXPECT_EQ(first.verify(data, keys[i].sign(data)), i == 0) << i;
        EXPECT_FALSE(none.verify(data, keys[i].sign(data))) << i;
    }
}

} // namespace

} // namespace quillon::test
