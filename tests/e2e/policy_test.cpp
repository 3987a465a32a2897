// The headless program under an administrator's policy.
#include "e2e/policyfixture.h"
#include "e2e/site.h"

#include <gtest/gtest.h>

namespace quillon::test {

namespace {

std::string const client = TEST_PROGRAMS "/tarvikclient-cli-policytest";

TEST(HeadlessPolicy, decides_and_is_told) {
    Site site;
    ProgramPolicy policy;
    std::string const gateways = "<gateways><allowed>*.corp.example</allowed><others>",
                      end = "</others></gateways>";
    std::string const url = site.url("plugindllnotunnel"), session = "onDispatch 4\nonStatus 4\n";
    struct {
        char const* what;
        std::string rules; ///< empty: no file
        std::vector<std::string> arguments;
        int code;
        std::string output, errors; ///< parts of them
    } const cases[] = {
        {"no file", "", {url}, 0, session, ""},
        {"no file shown", "", {"--policy"}, 0, "no policy file: everything is as built", ""},
        {"refused", gateways + "refuse" + end, {"--yes", url}, 1, "onFatalError\n", ""},
        {"nobody to ask", gateways + "ask" + end, {url}, 1, "onFatalError\n", ""},
        {"agreed to", gateways + "ask" + end, {"--yes", url}, 0, session, ""},
        {"shown",
         gateways + "ask" + end + "<companions>manifest</companions>",
         {"--policy"},
         0,
         "gateway allowed: *.corp.example\nother gateways: ask\ncertificate exceptions: allow\n"
         "companions: only by manifest\npublisher's key: ",
         ""},
        {"misspelt", gateways + "aks" + end, {"--yes", url}, 1, "onFatalError\n", ""},
        {"misspelt shown", gateways + "aks" + end, {"--policy"}, 1, "", "<others> cannot be \"aks\""},
    };
    for (auto const& row : cases) {
        SCOPED_TRACE(row.what);
        row.rules.empty() ? policy.remove() : policy.write(row.rules);
        std::vector<std::string> arguments{client};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        ChildProcess process(arguments, {{"HOME", site.home()}});
        EXPECT_EQ(process.wait(), row.code);
        EXPECT_NE(process.output().find(row.output), std::string::npos) << process.output();
        EXPECT_NE(process.errors().find(row.errors), std::string::npos) << process.errors();
    }
}

} // namespace

} // namespace quillon::test
