// A second user of the machine, who comes to a log that the first has made.
#include "attacks/attackfixture.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

char const sharedLog[] = "/tmp/tarvikclient.log";
constexpr uid_t second = 65534;

TEST(LogAttackSecondUser, logs_to_the_own_directory_or_else_nowhere_and_works) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only the administrator can become another user";
    TemporaryDirectory place; // the build's own may be closed to others
    fs::permissions(place.path(), fs::perms(0755));
    std::string const program = place.path() + "/client", home = place.path() + "/home";
    fs::copy_file(TEST_PROGRAMS "/tarvikclient-cli", program);
    fs::create_directories(home + "/.Tarvik");
    for (std::string const& path : {home, home + "/.Tarvik"})
        ASSERT_EQ(chown(path.c_str(), second, second), 0);
    ASSERT_EQ(
        ChildProcess({TEST_PROGRAMS "/tarvikclient-cli", "tarvik://127.0.0.1:1/"}, {{"HOME", home + "2"}})
            .wait(),
        2); // the first user's, whose the log is now
    struct stat before {
    }, after{};
    ASSERT_EQ(stat(sharedLog, &before), 0);

    for (bool const anywhere : {true, false}) {
        std::string const own = home + "/.Tarvik/tarvikclient.log";
        ChildProcess client(
            {"/usr/bin/setpriv", "--reuid=65534", "--clear-groups", program, "tarvik://127.0.0.1:1/"},
            {{"HOME", home}});
        EXPECT_EQ(client.wait(), 2) << client.errors();
        EXPECT_NE(client.errors().find(std::string("Can not log to ") + sharedLog), std::string::npos);
        EXPECT_EQ(client.errors().find("; the log is " + own) != std::string::npos, anywhere)
            << client.errors();
        EXPECT_EQ(client.errors().find(", nor to " + own) == std::string::npos, anywhere);
        EXPECT_EQ(fs::is_regular_file(own) &&
                      readFile(String::copyOf(own)).find("connect") != std::string::npos,
                  anywhere);
        fs::remove(own);
        fs::create_directory(own);
    }
    ASSERT_EQ(stat(sharedLog, &after), 0);
    EXPECT_EQ(before.st_uid, after.st_uid);
}

} // namespace

} // namespace quillon::test
