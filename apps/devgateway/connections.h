// The connections that are open, and their end when the gateway ends.
#pragma once

#include <openssl/ssl.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>

namespace devgateway {

/// Knows the socket of every TLS connection of a context, from the first step of its handshake until its SSL
/// object is freed. Without it the gateway's end would wait for every client that keeps a connection open and
/// idle, or that has opened one and says nothing.
///
/// Must outlive every connection of the contexts that it is attached to. Any thread may call.
class Connections {
public:
    Connections() = default;
    Connections(Connections const&) = delete;
    Connections& operator=(Connections const&) = delete;

    /// From now on the context's connections are known. The context's application data is used for it.
    void attachTo(SSL_CTX& context);

    /// Shuts every connection down, now and whenever one is opened after this; sleepers wake. The sockets are
    /// not closed: that is left to the threads that serve them.
    void shutDown();

    /// Shuts down the connections whose handshake has not been done in that time, however busy they are.
    void dropHandshakes(std::chrono::milliseconds longest);

    /// Waits that long, or until shutDown().
    void sleepFor(std::chrono::milliseconds time);

private:
    class Entry;
    using Clock = std::chrono::steady_clock;

    static void onSslEvent(SSL const* ssl, int where, int result) noexcept;
    static void onSslFree(void* ssl, void* entry, CRYPTO_EX_DATA*, int, long, void*) noexcept;
    static int entryIndex();

    void add(int socket);
    void shaken(int socket);
    void remove(int socket);

    std::mutex m_mutex;
    std::condition_variable m_closing;
    bool m_isClosing = false; // guarded by m_mutex
    /// By socket, which is open as long as it is in here: when its handshake began, unless that is done.
    std::map<int, std::optional<Clock::time_point>> m_sockets; // guarded by m_mutex
};

} // namespace devgateway
