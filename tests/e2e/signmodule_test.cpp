// The publisher's tool.
#include "e2e/childprocess.h"
#include "support/temporarydirectory.h"

#include <gtest/gtest.h>

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
        return code;
    }
    int sign(std::string const& name) {
        return run({"sign", "--key", TEST_PRIVATE_KEY, "--name", name, "--version", "1.0", module()});
    }
    int verify() { return run({"verify", "--key", TEST_PUBLIC_KEY, module()}); }
    std::string module() const { return m_directory.path() + "/module.so"; }

    TemporaryDirectory m_directory;
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
    for (std::vector<std::string> const& wrong :
         {std::vector<std::string>{}, {"sign", module()}, {"verify", "--name"}})
        EXPECT_EQ(run(wrong), 1);
}

} // namespace

} // namespace quillon::test
