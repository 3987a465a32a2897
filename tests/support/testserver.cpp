#include "support/testserver.h"

#include "support/channel.h"
#include "support/testcertificate.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace quillon::test {

namespace {

// A peer that has gone must not end the process, and what the process does about SIGPIPE is for tests to see:
// the server's threads keep the signal from themselves.
void blockBrokenPipe() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

void require(bool done, char const* what) {
    if (!done)
        throw std::runtime_error(std::string("test server: ") + what);
}

// Closing such a socket sends a reset.
void lingerNot(int socket) {
    linger const off{1, 0};
    setsockopt(socket, SOL_SOCKET, SO_LINGER, &off, sizeof off);
}

// A proxy that the machine's environment names must not come between a test and its server. Before main():
// the environment must not change while other threads look at it.
[[maybe_unused]] bool const g_withoutProxies = [] {
    for (char const* name : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"})
        unsetenv(name);
    return true;
}();

} // namespace

TestServer::TestServer(Handler handler, Tls tls)
    : TestServer(std::move(handler), tls == Tls::on ? std::make_unique<TestCertificate>() : nullptr) {}

TestServer::TestServer(Handler handler, CertificateLooks const& looks)
    : TestServer(std::move(handler), std::make_unique<TestCertificate>(looks)) {}

TestServer::TestServer(Handler handler, std::unique_ptr<TestCertificate> certificate)
    : m_handler(std::move(handler)), m_certificate(std::move(certificate)) {
    require(pipe(m_wake) == 0, "pipe");
    listen();
    m_acceptor = std::thread(&TestServer::acceptLoop, this);
}

TestServer::~TestServer() {
    {
        std::lock_guard const lock(m_mutex);
        m_stopping = true;
        for (Connection const& connection : m_connections)
            if (!connection.done)
                shutdown(connection.socket, SHUT_RDWR);
    }
    m_changed.notify_all();
    ::close(m_wake[1]);
    m_acceptor.join();
    join(m_connections);
    ::close(m_wake[0]);
    ::close(m_listener);
}

void TestServer::listen() {
    m_listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    sockaddr* const generic = reinterpret_cast<sockaddr*>(&address);
    require(bind(m_listener, generic, size) == 0, "bind");
    require(::listen(m_listener, SOMAXCONN) == 0, "listen");
    require(getsockname(m_listener, generic, &size) == 0, "getsockname");
    m_port = ntohs(address.sin_port);
}

void TestServer::acceptLoop() {
    blockBrokenPipe();
    for (;;) {
        pollfd watched[] = {{m_listener, POLLIN, 0}, {m_wake[0], POLLIN, 0}};
        if (poll(watched, 2, -1) < 0)
            continue;
        if (watched[1].revents)
            return;
        if (int const accepted = accept(m_listener, nullptr, nullptr); accepted >= 0)
            open(accepted);
    }
}

void TestServer::open(int socket) {
    int const on = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    std::list<Connection> finished;
    {
        std::lock_guard const lock(m_mutex);
        if (m_stopping) {
            ::close(socket);
            return;
        }
        for (auto i = m_connections.begin(); i != m_connections.end();) {
            auto const current = i++;
            if (current->done)
                finished.splice(finished.end(), m_connections, current);
        }
        Connection& connection = m_connections.emplace_back();
        connection.socket = socket;
        connection.thread = std::thread([this, &connection] { serve(connection); });
    }
    join(finished);
}

void TestServer::join(std::list<Connection>& connections) {
    for (Connection& connection : connections)
        connection.thread.join();
}

void TestServer::serve(Connection& connection) {
    blockBrokenPipe();
    int socket;
    {
        std::lock_guard const lock(m_mutex);
        socket = connection.socket;
    }
    {
        Channel channel(socket, m_certificate ? m_certificate->context() : nullptr);
        while (auto request = channel.readRequest()) {
            {
                std::lock_guard const lock(m_mutex);
                m_requests.push_back(*request);
            }
            m_changed.notify_all();
            if (!answer(channel, connection, m_handler(*request)))
                break;
        }
    }
    // Under the lock, so that the destructor cannot meet the number of a socket that is somebody else's by
    // now.
    std::lock_guard const lock(m_mutex);
    ::close(socket);
    connection.done = true;
}

bool TestServer::answer(Channel& channel, Connection const& connection, Reply const& reply) {
    if (reply.delay.count() != 0)
        isEndedWithin(reply.delay);
    bool sent = channel.write(reply.bytes);
    for (std::size_t i = 0; sent && i < reply.times; ++i)
        sent = channel.write(reply.again);
    if (reply.ending == Reply::hold) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_released || m_stopping; });
    }
    if (reply.ending == Reply::trickle)
        trickle(channel);
    if (reply.ending == Reply::reset)
        lingerNot(connection.socket);
    else if (sent && reply.ending != Reply::keepAlive)
        channel.shutDown();
    return sent && reply.ending == Reply::keepAlive;
}

bool TestServer::isEndedWithin(std::chrono::milliseconds time) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, time, [this] { return m_released || m_stopping; });
}

void TestServer::trickle(Channel& channel) {
    while (!isEndedWithin(std::chrono::milliseconds(50)) && channel.write("."))
        ;
}

std::string TestServer::url(std::string_view target) const {
    return (m_certificate ? "https://" : "http://") + authority() + std::string(target);
}

std::vector<Request> TestServer::requests() const {
    std::lock_guard const lock(m_mutex);
    return m_requests;
}

std::size_t TestServer::requestCount() const {
    std::lock_guard const lock(m_mutex);
    return m_requests.size();
}

Request TestServer::lastRequest() const {
    std::lock_guard const lock(m_mutex);
    return m_requests.back();
}

bool TestServer::awaitRequests(std::size_t count) const {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, std::chrono::seconds(10), [&] { return m_requests.size() >= count; });
}

void TestServer::release() {
    {
        std::lock_guard const lock(m_mutex);
        m_released = true;
    }
    m_changed.notify_all();
}

} // namespace quillon::test
