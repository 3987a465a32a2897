#include "tarvikclient/gui/singleinstance.h"

#include "base/file.h"
#include "openssl/md5_wrapper.h"
#include "support/logcapture.h"
#include "support/temporarydirectory.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

namespace {

using Role = SingleInstance::Role;
using namespace std::chrono_literals;

constexpr auto shortPatience = 200ms;
constexpr uid_t strangerId = 65534;

/// Runs `body` in a process of its own, which ends with its result.
class Child {
public:
    explicit Child(std::function<int()> const& body) : m_id(fork()) {
        if (m_id == 0)
            _exit(body());
    }
    ~Child() {
        if (m_id > 0)
            kill();
    }
    Child(Child&& other) noexcept : m_id(std::exchange(other.m_id, -1)) {}

    int wait() {
        int status = 0;
        waitpid(std::exchange(m_id, -1), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    void kill() {
        ::kill(m_id, SIGKILL);
        wait();
    }

private:
    pid_t m_id;
};

Child claimant(String const& url, std::chrono::milliseconds patience = SingleInstance::defaultPatience) {
    return Child([&] {
        SingleInstance instance;
        return static_cast<int>(instance.claim(url, patience));
    });
}

/// One byte from a child to the test: it has got so far.
class Signpost {
public:
    Signpost() { EXPECT_EQ(pipe2(m_ends, O_CLOEXEC), 0); }
    ~Signpost() {
        close(m_ends[0]);
        close(m_ends[1]);
    }
    void raise() { EXPECT_EQ(write(m_ends[1], "", 1), 1); }
    void await() {
        pollfd end{m_ends[0], POLLIN, 0};
        char byte;
        ASSERT_EQ(poll(&end, 1, 10000), 1);
        ASSERT_EQ(read(m_ends[0], &byte, 1), 1);
    }

private:
    int m_ends[2];
};

/// The name is an agreement between this version of the program and those that run beside it.
struct Place {
    Place() {
        tls::MD5 digest;
        digest.update(Memory(File::getUserApplicationDataDirectory()));
        String const name = "tarvikclient-" + toString(geteuid()) + "-" + digest.final().toHex();
        address.sun_family = AF_UNIX;
        std::copy(name.begin(), name.end(), address.sun_path + 1);
        length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.length());
    }
    sockaddr const* get() const { return reinterpret_cast<sockaddr const*>(&address); }

    sockaddr_un address{};
    socklen_t length;
};

int seqpacket() {
    return socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
}

/// A home of its own for each test, and so a place of its own.
class SingleInstanceTest : public testing::Test {
protected:
    SingleInstanceTest() : m_before(std::getenv("HOME") ? std::getenv("HOME") : "") {
        setenv("HOME", m_home.path().c_str(), 1);
    }
    ~SingleInstanceTest() override { setenv("HOME", m_before.c_str(), 1); }

    /// Receives until `count` URLs have come or nothing has for ten seconds.
    std::multiset<std::string> receive(SingleInstance& instance, std::size_t count) {
        std::multiset<std::string> urls;
        auto const deadline = std::chrono::steady_clock::now() + 10s;
        while (urls.size() < count && std::chrono::steady_clock::now() < deadline)
            instance.receive([&](String const& url) { urls.emplace(url.view()); }, 100ms);
        return urls;
    }

private:
    test::TemporaryDirectory m_home;
    std::string m_before;
};

TEST_F(SingleInstanceTest, secondProcessHandsItsUrlOver) {
    SingleInstance first;
    ASSERT_EQ(first.claim("tarvik://own/"), Role::first);
    for (unsigned const length : {1u, 40u, SingleInstance::maxUrl}) {
        std::string const url(length, 'u');
        Child second = claimant(url.c_str());
        EXPECT_EQ(receive(first, 1), std::multiset<std::string>{url}) << length;
        EXPECT_EQ(second.wait(), static_cast<int>(Role::second)) << length;
    }
}

TEST_F(SingleInstanceTest, secondProcessWithoutUrlDoesNotWait) {
    SingleInstance first;
    ASSERT_EQ(first.claim(""), Role::first);
    EXPECT_EQ(claimant("").wait(), static_cast<int>(Role::second)); // though the first never looks
    first.receive([](String const&) { FAIL() << "a URL"; }, 0ms);
}

TEST_F(SingleInstanceTest, urlBeyondTheLimitIsNotHandedOver) {
    test::LogCapture log;
    SingleInstance first;
    ASSERT_EQ(first.claim(""), Role::first);
    std::string const url(SingleInstance::maxUrl + 1, 'u');
    SingleInstance second;
    EXPECT_EQ(second.claim(url.c_str()), Role::unheard);
    EXPECT_TRUE(log.contains("too long"));
}

TEST_F(SingleInstanceTest, ofTwentyAtOnceOneRunsAndHearsAllOthers) {
    Signpost ready;
    auto const run = [&](std::string const& url) {
        SingleInstance instance;
        if (instance.claim(url.c_str()) != Role::first)
            return 0;
        ready.raise();
        auto const others = receive(instance, 19);
        std::set<std::string> const distinct(others.begin(), others.end());
        return distinct.size() == 19 && !distinct.contains(url) ? 100 : 101;
    };
    std::vector<Child> children;
    for (int i = 0; i < 20; ++i)
        children.emplace_back([&] { return run("tarvik://" + std::to_string(i)); });
    int sum = 0;
    for (Child& child : children)
        sum += child.wait();
    EXPECT_EQ(sum, 100);
}

TEST_F(SingleInstanceTest, placeIsFreeOnceTheFirstWasKilled) {
    Signpost claimed;
    Child first([&] {
        SingleInstance instance;
        if (instance.claim("") == Role::first)
            claimed.raise();
        return pause();
    });
    claimed.await();
    first.kill();
    SingleInstance next;
    EXPECT_EQ(next.claim("tarvik://x/"), Role::first);
}

TEST_F(SingleInstanceTest, processThatWaitsTakesThePlaceOfAnEndingOne) {
    Signpost listening;
    Child second([&] { // made before the socket, which it would hold open otherwise
        listening.await();
        SingleInstance instance;
        return static_cast<int>(instance.claim("tarvik://x/"));
    });
    Place const place;
    int const ending = seqpacket();
    ASSERT_EQ(bind(ending, place.get(), place.length), 0);
    ASSERT_EQ(listen(ending, 5), 0);
    listening.raise();
    pollfd queue{ending, POLLIN, 0};
    ASSERT_EQ(poll(&queue, 1, 10000), 1);
    close(ending);
    EXPECT_EQ(second.wait(), static_cast<int>(Role::first));
}

TEST_F(SingleInstanceTest, muteFirstIsNotWaitedForForEver) {
    SingleInstance first;
    ASSERT_EQ(first.claim(""), Role::first);
    EXPECT_EQ(claimant("tarvik://x/", shortPatience).wait(), static_cast<int>(Role::unheard));
    // Nothing is lost for a first that was only slow.
    EXPECT_EQ(receive(first, 1), std::multiset<std::string>{"tarvik://x/"});
}

TEST_F(SingleInstanceTest, nameWithoutAListenerDoesNotKeepTheUserFromTheClient) {
    Place const place;
    int const squatter = seqpacket();
    ASSERT_EQ(bind(squatter, place.get(), place.length), 0);
    EXPECT_EQ(claimant("tarvik://x/", shortPatience).wait(), static_cast<int>(Role::first));
    close(squatter);
}

TEST_F(SingleInstanceTest, packetsThatAreNoUrlsAreIgnored) {
    test::LogCapture log;
    SingleInstance first;
    ASSERT_EQ(first.claim(""), Role::first);
    std::string const greeting = "tarvikclient URL 1\n";
    std::string const packets[] = {"x",
                                   "tarvik://x/",
                                   greeting,
                                   greeting + std::string("a\0b", 3),
                                   greeting + std::string(SingleInstance::maxUrl + 1, 'u'),
                                   std::string(100000, '\0')};
    Place const place;
    std::vector<int> peers;
    for (std::string const& packet : packets) {
        peers.push_back(seqpacket());
        ASSERT_EQ(connect(peers.back(), place.get(), place.length), 0);
        ASSERT_EQ(send(peers.back(), packet.data(), packet.size(), 0), static_cast<ssize_t>(packet.size()));
    }
    Child second = claimant("tarvik://good/");
    EXPECT_EQ(receive(first, 1), std::multiset<std::string>{"tarvik://good/"});
    EXPECT_EQ(log.count("not a launch URL"), std::size(packets));
    EXPECT_FALSE(log.contains("tarvik://"));
    for (int const peer : peers)
        close(peer);
}

TEST_F(SingleInstanceTest, silentPeersDoNotKeepOthersOut) {
    SingleInstance first;
    ASSERT_EQ(first.claim(""), Role::first);
    Place const place;
    std::vector<int> peers;
    for (int i = 0; i < 200; ++i) {
        peers.push_back(seqpacket());
        ASSERT_EQ(connect(peers.back(), place.get(), place.length), 0);
        first.receive([](String const&) {}, 0ms);
    }
    Child second = claimant("tarvik://x/");
    EXPECT_EQ(receive(first, 1).size(), 1u);
    for (int const peer : peers)
        close(peer);
}

/// The rights to become somebody else.
class Strangers : public SingleInstanceTest {
protected:
    void SetUp() override {
        if (geteuid() != 0)
            GTEST_SKIP() << "only the administrator can act as two users";
    }
};

TEST_F(Strangers, foreignOwnerOfTheNameIsToldNothing) {
    test::LogCapture log;
    Signpost listening;
    Place const place;
    Child stranger([&] {
        int const listener = seqpacket();
        if (setuid(strangerId) != 0 || bind(listener, place.get(), place.length) != 0 ||
            listen(listener, 5) != 0)
            return 1;
        listening.raise();
        char byte;
        return recv(accept(listener, nullptr, nullptr), &byte, 1, 0) == 0 ? 2 : 3;
    });
    listening.await();
    SingleInstance instance;
    EXPECT_EQ(instance.claim("tarvik://ticket@gateway/"), Role::first);
    EXPECT_TRUE(log.contains("stranger"));
    EXPECT_EQ(stranger.wait(), 2);
}

TEST_F(Strangers, foreignPeerIsTurnedAway) {
    SingleInstance first;
    ASSERT_EQ(first.claim(""), Role::first);
    Place const place;
    Child stranger([&] {
        int const peer = seqpacket();
        std::string const packet = "tarvikclient URL 1\ntarvik://evil/";
        if (setuid(strangerId) != 0 || connect(peer, place.get(), place.length) != 0)
            return 1;
        send(peer, packet.data(), packet.size(), MSG_NOSIGNAL);
        char byte;
        return recv(peer, &byte, 1, 0) <= 0 ? 2 : 3;
    });
    test::LogCapture log;
    while (!log.contains("turned away"))
        first.receive([](String const& url) { ADD_FAILURE() << url.view(); }, 100ms);
    EXPECT_EQ(stranger.wait(), 2);
}

} // namespace

} // namespace quillon
