// One accepted connection, with or without TLS, as a stream of bytes.
#pragma once

#include "support/testmessages.h"

#include <memory>
#include <optional>

struct ssl_ctx_st;
struct ssl_st;

namespace quillon::test {

/// Reads requests from a connected socket and writes bytes to it, blocking. The socket belongs to the caller,
/// who may shut it down from another thread to end a call that waits. One thread at a time otherwise.
class Channel {
public:
    /// Without TLS when `context` is null. The handshake takes place with the first request.
    Channel(int socket, ssl_ctx_st* context);
    ~Channel();
    Channel(Channel const&) = delete;
    Channel& operator=(Channel const&) = delete;

    /// The next request; empty when the peer has gone, TLS could not be agreed on or the bytes are no
    /// request. Answers "Expect: 100-continue" on the way.
    std::optional<Request> readRequest();
    /// False when the peer has gone.
    bool write(std::string_view bytes);
    /// Says good-bye in TLS; nothing without it.
    void shutDown();

private:
    struct Free {
        void operator()(ssl_st* tls) const;
    };

    bool handshake();
    /// Appends what has come to m_received; false at the end.
    bool receive();

    int m_socket;
    std::unique_ptr<ssl_st, Free> m_tls;
    bool m_ready = false;
    std::string m_received;
};

} // namespace quillon::test
