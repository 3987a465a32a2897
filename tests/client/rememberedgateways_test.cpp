// The list of gateways that the user has agreed to.
#include "tarvikclient/rememberedgateways.h"

#include "support/logcapture.h"
#include "support/temporarydirectory.h"
#include "tarvikclient/policyrules.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <functional>

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

http::HostPort gatewayOf(std::string const& name) {
    return *http::HostPort::parse(String::copyOf(name), gatewayPort);
}

void moveBehindLink(std::string const& file) {
    fs::rename(file, file + ".real");
    fs::create_symlink(file + ".real", file);
}

TEST(RememberedGateways, knows_the_last_hundred_by_name_and_port) {
    TemporaryDirectory directory;
    RememberedGateways const gateways(directory.file("gateways.xml"));
    EXPECT_FALSE(gateways.contains(gatewayOf("0.example")));
    for (int i = 0; i <= 100; ++i)
        gateways.add(gatewayOf(std::to_string(i) + ".example:8443"));
    gateways.add(gatewayOf("1.example:8443")); // again
    EXPECT_FALSE(gateways.contains(gatewayOf("0.example:8443")));
    for (int i = 1; i <= 100; ++i)
        EXPECT_TRUE(gateways.contains(gatewayOf(std::to_string(i) + ".EXAMPLE.:8443"))) << i;
    EXPECT_FALSE(gateways.contains(gatewayOf("1.example")));
    EXPECT_EQ(fs::status(directory.path() + "/gateways.xml").permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(std::distance(fs::directory_iterator(directory.path()), {}), 1);
}

TEST(RememberedGateways, a_list_that_is_damaged_or_not_the_users_alone_is_none_until_the_next_yes) {
    std::string const good = "<gateways><gateway>gate.example</gateway></gateways>";
    std::string const otherRoot = "<g><gateway>gate.example</gateway></g>";
    std::pair<char const*, std::function<void(String const&)>> const cases[] = {
        {"link", [](auto& file) { moveBehindLink(file.str()); }},
        {"pipe", [](auto& file) { fs::remove(file.str()), mkfifo(file.str(), 0600); }},
        {"writable", [](auto& file) { chmod(file.str(), 0620); }},
        {"cut off", [&](auto& file) { fs::resize_file(file.str(), good.size() - 3); }},
        {"other root", [&](auto& file) { writeFile(file, otherRoot); }},
        {"large", [&](auto& file) { writeFile(file, good + std::string(64 * 1024, ' ')); }},
    };
    for (auto const& [what, spoil] : cases) {
        SCOPED_TRACE(what);
        TemporaryDirectory directory;
        String const file = directory.file("gateways.xml");
        writeFile(file, good);
        chmod(file.str(), 0600);
        RememberedGateways const gateways(file);
        EXPECT_TRUE(gateways.contains(gatewayOf("gate.example")));
        spoil(file);
        EXPECT_FALSE(gateways.contains(gatewayOf("gate.example")));
        gateways.add(gatewayOf("other.example"));
        EXPECT_TRUE(gateways.contains(gatewayOf("other.example")));
        EXPECT_FALSE(gateways.contains(gatewayOf("gate.example")));
    }
}

TEST(RememberedGateways, a_list_that_cannot_be_written_is_logged_and_leaves_nothing_behind) {
    TemporaryDirectory directory;
    String const file = directory.file("gateways.xml");
    fs::create_directory(std::string(file.view()));
    LogCapture const log;
    RememberedGateways(file).add(gatewayOf("gate.example"));
    EXPECT_TRUE(log.contains("Cannot remember gate.example"));
    EXPECT_EQ(std::distance(fs::directory_iterator(directory.path()), {}), 1);
}

} // namespace

} // namespace quillon::test
