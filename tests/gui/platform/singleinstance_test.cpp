#include "tarvikclient/gui/platform/singleinstance.h"

#include "base/descriptor.h"
#include "base/file.h"
#include "e2e/childprocess.h"
#include "openssl/md5_wrapper.h"
#include "support/logcapture.h"
#include "support/temporarydirectory.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <list>
#include <set>
#include <sstream>

namespace quillon {

namespace {

using Role = SingleInstance::Role;
using Urls = std::multiset<std::string>;
using namespace std::chrono_literals;

/// A process that finds another one running, or does not: see instanceprobe.cpp.
class Claimant : public test::ChildProcess {
public:
    explicit Claimant(std::string const& url,
                      std::chrono::milliseconds patience = SingleInstance::defaultPatience,
                      std::vector<std::string> const& more = {})
        : ChildProcess(command({INSTANCE_PROBE, std::to_string(patience.count()), url}, more)) {}

    Role role() { return static_cast<Role>(wait() - 10); }

private:
    static std::vector<std::string> command(std::vector<std::string> all,
                                            std::vector<std::string> const& more) {
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }
};

/// Receives until `count` URLs have come or nothing has for ten seconds.
Urls receive(SingleInstance& instance, std::size_t count) {
    Urls urls;
    auto const deadline = std::chrono::steady_clock::now() + 10s;
    while (urls.size() < count && std::chrono::steady_clock::now() < deadline)
        instance.receive([&](String const& url) { urls.emplace(url.view()); }, 100ms);
    return urls;
}

/// Directories of its own for each test, and so a place of its own. The path is longer than a socket's can
/// be.
class SingleInstanceTest : public testing::Test {
protected:
    SingleInstanceTest() : runtime(m_home.path() + "/" + std::string(120, 'r')) {
        std::filesystem::create_directory(runtime);
        std::filesystem::permissions(runtime, std::filesystem::perms::owner_all);
        setenv("HOME", m_home.path().c_str(), 1);
        setenv("XDG_RUNTIME_DIR", runtime.c_str(), 1);
        // The names are an agreement between this version of the program and those that run beside it.
        tls::MD5 digest;
        digest.update(Memory(File::getUserApplicationDataDirectory()));
        name = "tarvikclient-" + std::string(digest.final().toHex().view());
        m_directory = Descriptor(open(runtime.c_str(), O_PATH | O_CLOEXEC));
        ("/proc/self/fd/" + std::to_string(m_directory.number()) + "/" + name + ".socket")
            .copy(m_place.sun_path, sizeof m_place.sun_path - 1);
    }

    std::string lockPath() const { return runtime + "/" + name + ".lock"; }
    /// Somebody who has the lock, and other sockets than a client's.
    Descriptor locked() {
        Descriptor result(open(lockPath().c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
        struct flock whole {};
        whole.l_type = F_WRLCK;
        EXPECT_EQ(fcntl(result.number(), F_SETLK, &whole), 0);
        return result;
    }
    Descriptor bound() {
        Descriptor result = newSocket();
        EXPECT_EQ(bind(result.number(), place(), sizeof m_place), 0);
        return result;
    }
    Descriptor connected() {
        Descriptor result = newSocket();
        return connect(result.number(), place(), sizeof m_place) == 0 ? std::move(result) : Descriptor();
    }

    static Descriptor newSocket() { return Descriptor(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0)); }
    sockaddr const* place() const { return reinterpret_cast<sockaddr const*>(&m_place); }

    test::TemporaryDirectory m_home;
    std::string const runtime;
    std::string name;
    sockaddr_un m_place{AF_UNIX, {}};
    Descriptor m_directory;
};

/// A client runs already.
class RunningInstance : public SingleInstanceTest {
protected:
    RunningInstance() { EXPECT_EQ(first.claim("tarvik://own/"), Role::first); }

    SingleInstance first;
    test::LogCapture log;
};

TEST_F(RunningInstance, is_handed_the_second_ones_url) {
    for (unsigned const length : {1u, 40u, SingleInstance::maxUrl}) {
        std::string const url(length, 'u');
        Claimant second(url);
        EXPECT_EQ(receive(first, 1), Urls{url}) << length;
        EXPECT_EQ(second.role(), Role::second) << length;
    }
}

TEST_F(RunningInstance, is_not_waited_for_without_a_url_nor_handed_one_that_is_too_long) {
    EXPECT_EQ(Claimant("").role(), Role::second); // though the first never looks
    EXPECT_EQ(Claimant(std::string(SingleInstance::maxUrl + 1, 'u')).role(), Role::unheard);
    EXPECT_EQ(receive(first, 1), Urls{""}) << "of the one that was started without a URL";
}

TEST_F(RunningInstance, that_is_mute_is_not_waited_for_for_ever) {
    EXPECT_EQ(Claimant("tarvik://x/", 200ms).role(), Role::unheard);
    // Nothing is lost for a first that was only slow.
    EXPECT_EQ(receive(first, 1), Urls{"tarvik://x/"});
}

TEST_F(RunningInstance, ignores_packets_that_are_no_urls) {
    std::string const greeting = "tarvikclient URL 1\n";
    std::string const packets[] = {"x", "tarvik://x/", greeting + std::string("a\0b", 3),
                                   greeting + std::string(SingleInstance::maxUrl + 1, 'u'),
                                   std::string(100000, '\0')};
    std::vector<Descriptor> peers;
    for (std::string const& packet : packets) {
        peers.push_back(connected());
        ASSERT_EQ(send(peers.back().number(), packet.data(), packet.size(), 0), ssize_t(packet.size()));
    }
    Claimant second("tarvik://good/");
    EXPECT_EQ(receive(first, 1), Urls{"tarvik://good/"});
    EXPECT_EQ(log.count("not a launch URL"), std::size(packets));
    EXPECT_FALSE(log.contains("tarvik://"));
}

TEST_F(RunningInstance, is_not_kept_from_others_by_silent_peers) {
    std::vector<Descriptor> peers;
    for (int i = 0; i < 200; ++i) {
        peers.push_back(connected());
        ASSERT_TRUE(peers.back()) << i;
        first.receive([](String const&) {}, 0ms);
    }
    Claimant second("tarvik://x/");
    EXPECT_EQ(receive(first, 1).size(), 1u);
}

TEST_F(SingleInstanceTest, of_twenty_at_once_one_runs_and_hears_all_others) {
    std::list<Claimant> claimants;
    for (int i = 0; i < 20; ++i)
        claimants.emplace_back("tarvik://" + std::to_string(i), SingleInstance::defaultPatience,
                               std::vector<std::string>{"19"});
    std::multiset<Role> roles;
    std::set<std::string> heard;
    for (Claimant& claimant : claimants) {
        roles.insert(claimant.role());
        std::istringstream lines(claimant.output());
        for (std::string line; std::getline(lines, line);)
            heard.insert(line);
    }
    EXPECT_EQ(roles.count(Role::first), 1u);
    EXPECT_EQ(roles.count(Role::second), 19u);
    EXPECT_EQ(heard.size(), 20u); // with "first"
}

TEST_F(SingleInstanceTest, the_place_is_free_once_the_first_was_killed_though_its_child_lives) {
    Claimant killed("", 0ms, {"1", "fork"});
    ASSERT_TRUE(killed.awaitOutput("first"));
    EXPECT_EQ(Claimant("").role(), Role::second);
    killed.signal(SIGKILL);
    killed.wait();
    Claimant next("tarvik://x/", 2s);
    EXPECT_EQ(next.role(), Role::first);
    EXPECT_EQ(next.output(), ""); // no word of a stranger
}

TEST_F(SingleInstanceTest, who_waits_takes_the_place_of_a_process_that_ends) {
    Descriptor lock = locked();
    Descriptor ending = bound();
    ASSERT_EQ(listen(ending.number(), 5), 0);
    Claimant second("tarvik://x/");
    pollfd queue{ending.number(), POLLIN, 0};
    ASSERT_EQ(poll(&queue, 1, 10000), 1);
    ending = Descriptor();
    lock = Descriptor();
    EXPECT_EQ(second.role(), Role::first);
}

TEST_F(SingleInstanceTest, what_cannot_be_asked_does_not_keep_the_user_from_the_client) {
    std::string const other = m_home.path() + "/other";
    Descriptor lock, squatter;
    struct {
        char const* what;
        std::function<bool()> squat;
        std::chrono::milliseconds patience = SingleInstance::defaultPatience;
    } const cases[] = {
        {"a FIFO", [&] { return mkfifo(lockPath().c_str(), 0600) == 0; }},
        {"a directory", [&] { return mkdir(lockPath().c_str(), 0700) == 0; }},
        {"a link", [&] { return symlink(other.c_str(), lockPath().c_str()) == 0; }},
        {"a second name",
         [&] {
             test::writeFile(String::copyOf(other), "");
             return link(other.c_str(), lockPath().c_str()) == 0;
         }},
        {"another user's file",
         [&] {
             test::writeFile(String::copyOf(lockPath()), "");
             return chown(lockPath().c_str(), 65534, 65534) == 0 || geteuid() != 0;
         }},
        {"a directory for a socket",
         [&] { return mkdir((runtime + "/" + name + ".socket").c_str(), 0700) == 0; }},
        {"a socket of another kind",
         [&] {
             lock = locked();
             squatter = Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
             return bind(squatter.number(), place(), sizeof m_place) == 0 &&
                    listen(squatter.number(), 5) == 0;
         }},
        {"nobody behind the name", [&] { return (lock = locked()) && (squatter = bound()); }, 200ms},
    };
    for (auto const& [what, squat, patience] : cases) {
        SCOPED_TRACE(what);
        lock = Descriptor();
        squatter = Descriptor();
        std::filesystem::remove_all(other);
        for (auto const& entry : std::filesystem::directory_iterator(runtime))
            std::filesystem::remove_all(entry);
        ASSERT_TRUE(squat());
        auto const begun = std::chrono::steady_clock::now();
        Claimant claimant("tarvik://x/", patience);
        EXPECT_EQ(claimant.role(), Role::first);
        EXPECT_LT(std::chrono::steady_clock::now() - begun, 5s);
        EXPECT_NE(claimant.output(), "");
    }
}

TEST_F(SingleInstanceTest, a_runtime_directory_of_others_is_left_for_the_data_directory) {
    std::string const link = m_home.path() + "/link";
    ASSERT_EQ(symlink(runtime.c_str(), link.c_str()), 0);
    for (std::string const& given : {std::string(), std::string("relative"), link + "/", runtime}) {
        if (given == runtime)
            std::filesystem::permissions(runtime, std::filesystem::perms(0755));
        setenv("XDG_RUNTIME_DIR", given.c_str(), 1);
        SingleInstance first;
        ASSERT_EQ(first.claim(""), Role::first);
        EXPECT_TRUE(std::filesystem::exists(m_home.path() + "/.Tarvik/" + name + ".socket")) << given;
        EXPECT_EQ(Claimant("").role(), Role::second) << given;
    }
}

TEST_F(SingleInstanceTest, strangers_are_told_nothing_and_turned_away) {
    constexpr uid_t stranger = 65534;
    if (seteuid(stranger) != 0)
        GTEST_SKIP() << "only the administrator can act as two users";
    ASSERT_EQ(seteuid(0), 0);
    Descriptor lock = locked();
    Descriptor owner = bound();
    ASSERT_EQ(seteuid(stranger), 0); // who listens is who is asked
    EXPECT_EQ(listen(owner.number(), 5), 0);
    ASSERT_EQ(seteuid(0), 0);
    Claimant claimant("tarvik://ticket@gateway/");
    EXPECT_EQ(claimant.role(), Role::first);
    EXPECT_NE(claimant.output().find("stranger"), std::string::npos);
    Descriptor const told(accept(owner.number(), nullptr, nullptr));
    char byte;
    EXPECT_EQ(recv(told.number(), &byte, 1, 0), 0);

    lock = Descriptor();
    owner = Descriptor();
    test::LogCapture log;
    SingleInstance instance;
    ASSERT_EQ(instance.claim(""), Role::first);
    std::filesystem::permissions(runtime, std::filesystem::perms::all);
    std::filesystem::permissions(runtime + "/" + name + ".socket", std::filesystem::perms::all);
    ASSERT_EQ(seteuid(stranger), 0);
    Descriptor const peer = connected();
    ASSERT_EQ(seteuid(0), 0);
    std::string_view const packet = "tarvikclient URL 1\ntarvik://evil/";
    EXPECT_EQ(send(peer.number(), packet.data(), packet.size(), 0), ssize_t(packet.size()));
    for (int rounds = 0; rounds < 50 && !log.contains("turned away"); ++rounds)
        instance.receive([](String const& url) { ADD_FAILURE() << url.view(); }, 100ms);
    EXPECT_TRUE(log.contains("turned away"));
    EXPECT_LE(recv(peer.number(), &byte, 1, MSG_DONTWAIT), 0);
}

} // namespace

} // namespace quillon
