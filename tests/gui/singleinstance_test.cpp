#include "tarvikclient/gui/singleinstance.h"

#include "base/file.h"
#include "openssl/md5_wrapper.h"
#include "support/logcapture.h"
#include "tarvikclient/gui/instancesocket.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <future>
#include <set>
#include <thread>

namespace quillon {

namespace {

using Role = SingleInstance::Role;
using Urls = std::multiset<std::string>;
using namespace std::chrono_literals;

/// What a process would do that finds another one running.
std::future<Role> claimant(std::string const& url,
                           std::chrono::milliseconds patience = SingleInstance::defaultPatience) {
    return std::async(std::launch::async, [=] { return SingleInstance().claim(url.c_str(), patience); });
}

/// Receives until `count` URLs have come or nothing has for ten seconds.
Urls receive(SingleInstance& instance, std::size_t count) {
    Urls urls;
    auto const deadline = std::chrono::steady_clock::now() + 10s;
    while (urls.size() < count && std::chrono::steady_clock::now() < deadline)
        instance.receive([&](String const& url) { urls.emplace(url.view()); }, 100ms);
    return urls;
}

/// A home of its own for each test, and so a place of its own.
class SingleInstanceTest : public testing::Test {
protected:
    SingleInstanceTest() {
        setenv("HOME", m_home.path().c_str(), 1);
        // The name is an agreement between this version of the program and those that run beside it.
        tls::MD5 digest;
        digest.update(Memory(File::getUserApplicationDataDirectory()));
        String const name = "tarvikclient-" + toString(geteuid()) + "-" + digest.final().toHex();
        name.view().copy(m_place.sun_path + 1, name.length());
        m_length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.length());
    }

    /// Other sockets than a client's at the place.
    Descriptor bound() {
        Descriptor result = newSocket();
        EXPECT_EQ(bind(result.number(), place(), m_length), 0);
        return result;
    }
    Descriptor listening() {
        Descriptor result = bound();
        EXPECT_EQ(listen(result.number(), 5), 0);
        return result;
    }
    Descriptor connected() {
        Descriptor result = newSocket();
        return connect(result.number(), place(), m_length) == 0 ? std::move(result) : Descriptor();
    }

private:
    static Descriptor newSocket() { return Descriptor(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0)); }
    sockaddr const* place() const { return reinterpret_cast<sockaddr const*>(&m_place); }

    test::TemporaryDirectory m_home;
    sockaddr_un m_place{AF_UNIX, {}};
    socklen_t m_length;
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
        auto second = claimant(url);
        EXPECT_EQ(receive(first, 1), Urls{url}) << length;
        EXPECT_EQ(second.get(), Role::second) << length;
    }
}

TEST_F(RunningInstance, is_not_waited_for_without_a_url_nor_handed_one_that_is_too_long) {
    EXPECT_EQ(claimant("").get(), Role::second); // though the first never looks
    EXPECT_EQ(claimant(std::string(SingleInstance::maxUrl + 1, 'u')).get(), Role::unheard);
    EXPECT_TRUE(log.contains("too long"));
    first.receive([](String const&) { ADD_FAILURE() << "a URL"; }, 0ms);
}

TEST_F(RunningInstance, that_is_mute_is_not_waited_for_for_ever) {
    EXPECT_EQ(claimant("tarvik://x/", 200ms).get(), Role::unheard);
    // Nothing is lost for a first that was only slow.
    EXPECT_EQ(receive(first, 1), Urls{"tarvik://x/"});
}

TEST_F(RunningInstance, ignores_packets_that_are_no_urls) {
    std::string const greeting = "tarvikclient URL 1\n";
    std::string const packets[] = {"x",
                                   "tarvik://x/",
                                   greeting,
                                   greeting + std::string("a\0b", 3),
                                   greeting + std::string(SingleInstance::maxUrl + 1, 'u'),
                                   std::string(100000, '\0')};
    std::vector<Descriptor> peers;
    for (std::string const& packet : packets) {
        peers.push_back(connected());
        ASSERT_EQ(send(peers.back().number(), packet.data(), packet.size(), 0), ssize_t(packet.size()));
    }
    auto second = claimant("tarvik://good/");
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
    auto second = claimant("tarvik://x/");
    EXPECT_EQ(receive(first, 1).size(), 1u);
}

TEST_F(SingleInstanceTest, of_twenty_at_once_one_runs_and_hears_all_others) {
    auto const run = [](std::string const& url) {
        SingleInstance instance;
        return instance.claim(url.c_str()) == Role::first ? receive(instance, 19) : Urls();
    };
    std::vector<std::future<Urls>> instances;
    for (int i = 0; i < 20; ++i)
        instances.push_back(std::async(std::launch::async, run, "tarvik://" + std::to_string(i)));
    std::multiset<std::size_t> distinct;
    for (auto& instance : instances) {
        Urls const heard = instance.get();
        distinct.insert(std::set(heard.begin(), heard.end()).size());
    }
    EXPECT_EQ(distinct.count(19), 1u);
    EXPECT_EQ(distinct.count(0), 19u);
}

TEST_F(SingleInstanceTest, the_place_is_free_once_the_first_was_killed) {
    pid_t const first = fork();
    if (first == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        SingleInstance instance;
        instance.claim("");
        pause();
    }
    while (!connected())
        std::this_thread::yield();
    kill(first, SIGKILL);
    waitpid(first, nullptr, 0);
    EXPECT_EQ(SingleInstance().claim("tarvik://x/"), Role::first);
}

TEST_F(SingleInstanceTest, who_waits_takes_the_place_of_a_process_that_ends) {
    Descriptor ending = listening();
    auto second = claimant("tarvik://x/");
    pollfd queue{ending.number(), POLLIN, 0};
    ASSERT_EQ(poll(&queue, 1, 10000), 1);
    ending = Descriptor();
    EXPECT_EQ(second.get(), Role::first);
}

TEST_F(SingleInstanceTest, a_name_without_a_listener_does_not_keep_the_user_from_the_client) {
    Descriptor const squatter = bound();
    EXPECT_EQ(claimant("tarvik://x/", 200ms).get(), Role::first);
}

TEST_F(SingleInstanceTest, strangers_are_told_nothing_and_turned_away) {
    constexpr uid_t stranger = 65534;
    if (seteuid(stranger) != 0)
        GTEST_SKIP() << "only the administrator can act as two users";
    Descriptor owner = listening();
    seteuid(0);
    test::LogCapture log;
    SingleInstance instance;
    EXPECT_EQ(instance.claim("tarvik://ticket@gateway/"), Role::first);
    EXPECT_TRUE(log.contains("stranger"));
    Descriptor const told(accept(owner.number(), nullptr, nullptr));
    char byte;
    EXPECT_EQ(recv(told.number(), &byte, 1, 0), 0);

    owner = Descriptor();
    ASSERT_EQ(instance.claim(""), Role::first);
    ASSERT_EQ(seteuid(stranger), 0);
    Descriptor const peer = connected();
    seteuid(0);
    std::string_view const packet = "tarvikclient URL 1\ntarvik://evil/";
    EXPECT_EQ(send(peer.number(), packet.data(), packet.size(), 0), ssize_t(packet.size()));
    for (int rounds = 0; rounds < 50 && !log.contains("turned away"); ++rounds)
        instance.receive([](String const& url) { ADD_FAILURE() << url.view(); }, 100ms);
    EXPECT_TRUE(log.contains("turned away"));
    EXPECT_LE(recv(peer.number(), &byte, 1, MSG_DONTWAIT), 0);
}

} // namespace

} // namespace quillon
