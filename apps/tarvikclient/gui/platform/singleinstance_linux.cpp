#include "tarvikclient/gui/platform/singleinstance.h"

#include "base/log.h"
#include "base/stringconversion.h"
#include "tarvikclient/gui/platform/instancesocket.h"

#include <sys/epoll.h>
#include <sys/socket.h>
#include <wx/evtloop.h>
#include <wx/evtloopsrc.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <deque>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace quillon {

using instance::Handover;

namespace {

/// Long enough for a process that has the name to listen, too short to be noticed.
constexpr std::chrono::milliseconds retryPause{10};
/// After a process that does not take what it is handed, which may be one of another version: it logs each
/// try.
constexpr std::chrono::milliseconds refusedPause{500};
/// Connected and silent: more than that are not other clients.
constexpr std::size_t maxPeers = 64;

void logError(char const* method, String const& text) {
    log(ERROR, "SingleInstance", method, text);
}

} // namespace

/// The first process's end. Never waits for a peer: each says all it has to say in one packet.
class SingleInstance::Endpoint final : public wxEventLoopSourceHandler {
public:
    Endpoint() : m_ready(epoll_create1(EPOLL_CLOEXEC)), m_packet(instance::greeting.size() + maxUrl) {}

    /// As Place::claim().
    instance::Place::Claim claim();
    instance::Place const& place() const { return m_place; }

    void listen(UrlHandler onUrl);
    void receive(UrlHandler const& onUrl, std::chrono::milliseconds wait);

    void OnReadWaiting() override { receive(m_onUrl, std::chrono::milliseconds(0)); }
    void OnWriteWaiting() override {}
    void OnExceptionWaiting() override {}

private:
    void watch(Descriptor const& source);
    void acceptPeer();
    /// Nothing unless the peer has sent a URL, which may be empty.
    std::optional<String> readPeer(Descriptor const& peer);
    /// Takes the peer out when it has said something or gone.
    Descriptor takeSpeaker(int number);
    std::optional<String> packetUrl(ssize_t length) const;

    instance::Place m_place;
    Descriptor m_ready; // readable when the listener or a peer is: one source for the event loop
    std::deque<Descriptor> m_peers;
    bool m_strangersKnown = false;
    std::vector<char> m_packet;
    UrlHandler m_onUrl;
    std::unique_ptr<wxEventLoopSource> m_source;
};

instance::Place::Claim SingleInstance::Endpoint::claim() {
    auto const result = m_place.claim();
    if (result == instance::Place::Claim::held)
        watch(m_place.listener());
    return result;
}

void SingleInstance::Endpoint::watch(Descriptor const& source) {
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = source.number();
    if (epoll_ctl(m_ready.number(), EPOLL_CTL_ADD, source.number(), &event) != 0)
        logError("watch", String("other processes are not heard: ") + strerror(errno));
}

void SingleInstance::Endpoint::listen(UrlHandler onUrl) {
    m_source.reset();
    m_onUrl = std::move(onUrl);
    if (m_onUrl)
        m_source.reset(wxEventLoopBase::AddSourceForFD(m_ready.number(), this, wxEVENT_SOURCE_INPUT));
}

void SingleInstance::Endpoint::receive(UrlHandler const& onUrl, std::chrono::milliseconds wait) {
    epoll_event events[16];
    int const count = epoll_wait(m_ready.number(), events, std::size(events), static_cast<int>(wait.count()));
    for (int i = 0; i < count; ++i) {
        int const number = events[i].data.fd;
        if (number == m_place.listener().number()) {
            acceptPeer();
        } else if (Descriptor const peer = takeSpeaker(number)) {
            if (std::optional<String> const url = readPeer(peer))
                onUrl(*url);
        }
    }
}

void SingleInstance::Endpoint::acceptPeer() {
    Descriptor peer(accept4(m_place.listener().number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!peer) {
        if (errno != EMFILE && errno != ENFILE)
            return; // it has gone again
        // The peer stays in the queue, and so the queue stays ready: this thread would do nothing else.
        logError("accept", "too many open files: other processes are not heard any more");
        epoll_ctl(m_ready.number(), EPOLL_CTL_DEL, m_place.listener().number(), nullptr);
    } else if (!instance::isOwnUser(peer)) {
        // Once: others must not fill the user's disk.
        if (!std::exchange(m_strangersKnown, true))
            logError("accept", "a process of another user was turned away; further ones are not told");
    } else {
        if (m_peers.size() == maxPeers)
            m_peers.pop_front();
        watch(peer);
        m_peers.push_back(std::move(peer));
    }
}

Descriptor SingleInstance::Endpoint::takeSpeaker(int number) {
    auto const found = std::find_if(m_peers.begin(), m_peers.end(),
                                    [number](Descriptor const& peer) { return peer.number() == number; });
    if (found == m_peers.end())
        return Descriptor(); // dropped in this round
    Descriptor peer = std::move(*found);
    m_peers.erase(found);
    return peer;
}

std::optional<String> SingleInstance::Endpoint::readPeer(Descriptor const& peer) {
    // With MSG_TRUNC the result is the packet's length, also where the buffer is too short for it.
    ssize_t const length = recv(peer.number(), m_packet.data(), m_packet.size(), MSG_DONTWAIT | MSG_TRUNC);
    if (length <= 0)
        return std::nullopt; // it only wanted to know whether somebody is there
    std::optional<String> url = packetUrl(length);
    char const answer = '+';
    if (!url)
        logError("receive",
                 "not a launch URL: a packet of " + toString(static_cast<unsigned long>(length)) + " bytes");
    else
        send(peer.number(), &answer, 1, MSG_DONTWAIT | MSG_NOSIGNAL);
    return url;
}

std::optional<String> SingleInstance::Endpoint::packetUrl(ssize_t length) const {
    if (static_cast<std::size_t>(length) > m_packet.size())
        return std::nullopt;
    std::string_view packet(m_packet.data(), static_cast<std::size_t>(length));
    if (!packet.starts_with(instance::greeting))
        return std::nullopt;
    packet.remove_prefix(instance::greeting.size());
    // What a process was started with has no NUL in it.
    if (packet.find('\0') != packet.npos)
        return std::nullopt;
    return String::copyOf(packet);
}

SingleInstance::SingleInstance() = default;

SingleInstance::~SingleInstance() = default;

SingleInstance::Role SingleInstance::claim(String const& url, std::chrono::milliseconds patience) {
    using Claim = instance::Place::Claim;
    Deadline const deadline(patience);
    Handover outcome = Handover::absent;
    m_endpoint = std::make_unique<Endpoint>();
    do {
        if (m_endpoint->claim() != Claim::occupied)
            return Role::first;
        if (url.length() > maxUrl) {
            logError("claim", "the URL is too long for the running client");
            return Role::unheard;
        }
        outcome = instance::handOver(m_endpoint->place(), url, deadline);
        if (outcome == Handover::done)
            return Role::second;
        if (outcome == Handover::foreign)
            break;
        std::this_thread::sleep_for(outcome == Handover::broken ? refusedPause : retryPause);
    } while (!deadline.hasPassed());
    // A client listens at once: where nobody does for so long somebody else is at work.
    if (outcome == Handover::foreign || outcome == Handover::absent) {
        logError("claim", "the place is taken by a stranger: running without it");
        return Role::first;
    }
    logError("claim", "the running client does not answer");
    return Role::unheard;
}

void SingleInstance::listen(UrlHandler onUrl) {
    if (m_endpoint)
        m_endpoint->listen(std::move(onUrl));
}

void SingleInstance::receive(UrlHandler const& onUrl, std::chrono::milliseconds wait) {
    if (m_endpoint)
        m_endpoint->receive(onUrl, wait);
}

} // namespace quillon
