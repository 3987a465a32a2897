// The publisher's tool.
#include "e2e/childprocess.h"
#include "support/temporarydirectory.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace quillon::test {

namespace {

class SignModuleTest : public ::testing::Test {
protected:
    SignModuleTest() { writeFile(m_directory.file("module.so"), "the module"); }

    int run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), TEST_PROGRAMS "/tarvik-signmodule");
        ChildProcess tool(arguments);
        int const code = tool.wait();
        EXPECT_EQ(tool.output(), "");
        EXPECT_FALSE(tool.errors().empty());
        m_said = tool.errors();
        return code;
    }
    int sign(std::string const& name, std::vector<std::string> arguments = {}) {
        arguments.insert(arguments.begin(),
                         {"sign", "--key", TEST_PRIVATE_KEY, "--name", name, "--version", "1.0"});
        arguments.push_back(module());
        return run(arguments);
    }
    int signWith(std::string const& companion) {
        return sign("n", {"--kind", "plugin", "--platform", "linux-x86_64", "--companion", companion});
    }
    int verify() { return run({"verify", "--key", TEST_PUBLIC_KEY, module()}); }
    std::string module() const { return m_directory.path() + "/module.so"; }

    TemporaryDirectory m_directory;
    std::string m_said;
};

TEST_F(SignModuleTest, what_it_signs_verifies_until_something_changes) {
    EXPECT_EQ(verify(), 1);
    ASSERT_EQ(sign("a name"), 0);
    EXPECT_EQ(verify(), 0);
    String const signature = m_directory.file("module.so.sig");
    std::string record = readFile(signature);
    record.replace(record.find("a name"), 6, "a NAME");
    writeFile(signature, record);
    EXPECT_EQ(verify(), 1);
    ASSERT_EQ(sign("a name"), 0);
    writeFile(m_directory.file("module.so"), "the other");
    EXPECT_EQ(verify(), 1);
}

TEST_F(SignModuleTest, refuses_what_it_cannot_sign) {
    EXPECT_EQ(sign("<name>"), 1);
    EXPECT_EQ(run({"sign", "--key", TEST_PUBLIC_KEY, "--name", "n", "--version", "1", module()}), 1);
    EXPECT_EQ(run({"sign", "--key", TEST_PRIVATE_KEY, "--name", "n", "--version", "1", module() + "x"}), 1);
    EXPECT_EQ(run({"verify", "--key", TEST_PRIVATE_KEY, module()}), 1);
    for (auto const& wrong : {std::vector<std::string>{}, {"sign", module()}, {"verify", "--name"}})
        EXPECT_EQ(run(wrong), 1);
    for (std::vector<std::string> const& wrong : {std::vector<std::string>{"--kind", "plugin"},
                                                  {"--platform", "linux-x86_64"},
                                                  {"--companion", module()},
                                                  {"--kind", "tunnel", "--platform", "linux-x86_64"},
                                                  {"--kind", "plugin", "--platform", "linux"},
                                                  {"--kind", "", "--platform", ""}}) {
        EXPECT_EQ(sign("n", wrong), 1);
        EXPECT_EQ(m_said.rfind("usage: ", 0), 0u) << m_said;
    }
}

TEST_F(SignModuleTest, companions_verify_until_something_changes) {
    std::filesystem::create_directory(m_directory.path() + "/data");
    String const helper = m_directory.file("data/helper");
    writeFile(helper, "the helper");
    ASSERT_EQ(signWith(m_directory.path() + "/./data/../data/helper"), 0) << m_said;
    EXPECT_EQ(verify(), 0);
    EXPECT_NE(m_said.find("a plugin for linux-x86_64\n"), std::string::npos) << m_said;
    EXPECT_NE(m_said.find("companion data/helper verifies\n"), std::string::npos) << m_said;
    writeFile(helper, "the other");
    EXPECT_EQ(verify(), 1);
    std::filesystem::remove(helper.str());
    EXPECT_EQ(verify(), 1);
    std::filesystem::create_symlink(module(), helper.str());
    EXPECT_EQ(verify(), 1);
}

TEST_F(SignModuleTest, refuses_companions_that_a_client_would_not_install) {
    std::string const directory = m_directory.path();
    std::filesystem::create_symlink("module.so", directory + "/link");
    std::filesystem::create_directory_symlink("/", directory + "/root");
    for (char const* const name : {"a<b", "a&b", "MODULE.SO", "ends."})
        writeFile(m_directory.file(name), "content");
    for (char const* const name : {"module.so", "MODULE.SO", "a<b", "a&b", "ends.", "link", "absent", "", ".",
                                   "..", "root/etc/passwd", "../../etc/passwd"})
        EXPECT_EQ(signWith(directory + "/" + name), 1) << name << m_said;
    EXPECT_FALSE(std::filesystem::exists(directory + "/module.so.sig"));
}

} // namespace

} // namespace quillon::test
