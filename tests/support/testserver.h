// An HTTP/1.1 server inside a test process.
#pragma once

#include "support/testmessages.h"

#include <condition_variable>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

namespace quillon::test {

class TestCertificate;
struct CertificateLooks;

enum class Tls { off, on };

/// Listens on 127.0.0.1 on a port that the system picks, from construction to destruction, and answers each
/// request with what a handler returns. Each connection is served on a thread of its own.
///
///     TestServer server([](Request const&) { return ok("hello"); });
///     fetch("https://" + server.authority() + "/");
///     EXPECT_EQ(server.requests().at(0).target, "/");
class TestServer {
public:
    /// Called on the connection's thread, several at once when several connections are open. It must not
    /// throw and must return before the server is destroyed.
    using Handler = std::function<Reply(Request const&)>;

    /// Throws std::runtime_error when it cannot listen.
    explicit TestServer(Handler handler, Tls tls = Tls::on);
    TestServer(Handler handler, CertificateLooks const& looks);
    /// Ends all connections at once, those that are held open too.
    ~TestServer();
    TestServer(TestServer const&) = delete;
    TestServer& operator=(TestServer const&) = delete;

    /// Null without TLS.
    TestCertificate const* certificate() const noexcept { return m_certificate.get(); }
    unsigned short port() const noexcept { return m_port; }
    /// "127.0.0.1:port".
    std::string authority() const { return "127.0.0.1:" + std::to_string(m_port); }
    /// The authority and `target` behind "https://" or "http://".
    std::string url(std::string_view target = "/") const;

    /// A copy of the requests so far, in the order their bodies were complete. Any thread.
    std::vector<Request> requests() const;
    std::size_t requestCount() const;
    /// The last one of requests(), of which there must be one. Any thread.
    Request lastRequest() const;
    /// Waits until so many requests have come; false after ten seconds.
    bool awaitRequests(std::size_t count) const;
    /// Ends the waits of replies that are held or delayed; later replies do not wait either. Any thread.
    void release();

private:
    struct Connection {
        int socket;
        bool done = false;
        std::thread thread;
    };

    TestServer(Handler handler, std::unique_ptr<TestCertificate> certificate);
    void listen();
    void acceptLoop();
    void open(int socket);
    void serve(Connection& connection);
    bool answer(class Channel& channel, Connection const& connection, Reply const& reply);
    bool isEndedWithin(std::chrono::milliseconds time);
    void trickle(class Channel& channel);
    void join(std::list<Connection>& connections);

    Handler const m_handler;
    std::unique_ptr<TestCertificate> const m_certificate;
    int m_listener = -1;
    int m_wake[2] = {-1, -1}; // a pipe: written to end the accept loop
    unsigned short m_port = 0;

    mutable std::mutex m_mutex; // of everything below
    mutable std::condition_variable m_changed;
    std::list<Connection> m_connections;
    std::vector<Request> m_requests;
    bool m_released = false;
    bool m_stopping = false;

    std::thread m_acceptor; // last: runs on all of the above
};

} // namespace quillon::test
