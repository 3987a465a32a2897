#include "devgateway/server.h"

#include "devgateway/connections.h"
#include "devgateway/log.h"
#include "devgateway/termination.h"
#include "devgateway/wire.h"
#include "devgateway/workers.h"

#include <httplib.h>
#include <sys/socket.h>

#include <chrono>
#include <stdexcept>

namespace devgateway {

namespace {

constexpr size_t mostWorkers = 256;
// A client that keeps an idle connection occupies a worker for this long, one that says nothing before or in
// the middle of a request for that long.
constexpr time_t keepAliveSeconds = 1;
constexpr time_t silenceSeconds = 5;
constexpr std::chrono::seconds longestHandshake(5);
constexpr size_t requestsPerConnection = 100;
constexpr time_t terminationCheckMicroseconds = 50'000;
constexpr size_t longestBody = 16UL * 1024 * 1024;

/// Only lets a port be taken again soon after the last gateway's end. The library's own choice (SO_REUSEPORT)
/// would let two gateways share a port, and requests go to either.
void setSocketOptions(socket_t socket) {
    int const yes = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

} // namespace

class Server::Private {
public:
    Private(Certificate const& certificate, std::string const& host, int port);

    void run();

    int m_port = 0;
    Handler m_handler;
    std::chrono::milliseconds m_delay{0};
    std::vector<Fault> m_faults;

private:
    bool setUpTls(SSL_CTX& context, Certificate const& certificate);
    void routeEverything();
    void serve(httplib::Request const& from, httplib::Response& to, std::string const& body);
    std::string commitFaults(Request const& request, Reply reply, httplib::Request const& from,
                             httplib::Response& to);
    void check();

    Connections m_connections; // outlives the server, whose connections it knows
    httplib::SSLServer m_server;
};

Server::Private::Private(Certificate const& certificate, std::string const& host, int port)
    : m_server([&](SSL_CTX& context) { return setUpTls(context, certificate); }) {
    if (!m_server.is_valid())
        throw std::runtime_error("cannot set up TLS");
    socket_t listener = INVALID_SOCKET;
    m_server.set_socket_options([&listener](socket_t socket) { setSocketOptions(listener = socket); });
    m_server.set_keep_alive_timeout(keepAliveSeconds);
    m_server.set_read_timeout(silenceSeconds);
    m_server.set_write_timeout(silenceSeconds);
    m_server.set_keep_alive_max_count(requestsPerConnection);
    m_server.set_idle_interval(0, terminationCheckMicroseconds);
    m_server.set_payload_max_length(longestBody);
    m_server.set_tcp_nodelay(true);
    m_server.new_task_queue = [this] { return new Workers(mostWorkers, [this] { check(); }); };
    routeEverything();

    m_port = port == 0 ? m_server.bind_to_any_port(host) : (m_server.bind_to_port(host, port) ? port : -1);
    if (m_port < 0)
        throw std::runtime_error("cannot listen on " + host + " port " + std::to_string(port));
    // The library's own choice is five, beyond which a client waits for a second or more.
    ::listen(listener, SOMAXCONN);
}

bool Server::Private::setUpTls(SSL_CTX& context, Certificate const& certificate) {
    m_connections.attachTo(context);
    return SSL_CTX_set_min_proto_version(&context, TLS1_2_VERSION) == 1 &&
           SSL_CTX_use_certificate(&context, certificate.certificate()) == 1 &&
           SSL_CTX_use_PrivateKey(&context, certificate.key()) == 1;
}

/// Every method and path goes to serve(), so that everything is logged and faults apply to everything. Bodies
/// are read here: the library's own reading limits the form encoding to 8 KB.
void Server::Private::routeEverything() {
    char const everyPath[] = R"([\s\S]*)";
    httplib::Server::Handler const bare = [this](httplib::Request const& request,
                                                 httplib::Response& response) {
        serve(request, response, {});
    };
    httplib::Server::HandlerWithContentReader const withBody = [this](httplib::Request const& request,
                                                                      httplib::Response& response,
                                                                      httplib::ContentReader const& read) {
        std::string body;
        bool const complete = read([&](char const* bytes, size_t count) {
            body.append(bytes, count);
            return true;
        });
        if (complete)
            serve(request, response, body);
    };
    m_server.Get(everyPath, bare);
    m_server.Options(everyPath, bare);
    m_server.Post(everyPath, withBody);
    m_server.Put(everyPath, withBody);
    m_server.Patch(everyPath, withBody);
    m_server.Delete(everyPath, withBody);
}

void Server::Private::serve(httplib::Request const& from, httplib::Response& to, std::string const& body) {
    m_connections.sleepFor(m_delay);
    Request const request = requestFrom(from, body);
    std::string const outcome = commitFaults(request, m_handler(request), from, to);
    logLine(from.method + " " + from.target + " cookies=[" + joined(request.cookieNames) + "] " + outcome);
}

/// Fills in the response with the reply and the faults that apply to it; returns what the log says of it.
std::string Server::Private::commitFaults(Request const& request, Reply reply, httplib::Request const& from,
                                          httplib::Response& to) {
    if (findFault(m_faults, FaultKind::Reset, request.path)) {
        cutConnection(from, to);
        return "reset";
    }
    if (Fault const* fault = findFault(m_faults, FaultKind::Status, request.path))
        setStatus(reply, fault->status);
    std::string outcome = std::to_string(reply.status);
    if (findFault(m_faults, FaultKind::Truncate, request.path)) {
        sendTruncated(reply, to);
        return outcome + " truncated";
    }
    sendWhole(reply, to);
    return outcome;
}

/// Called on the listening thread alone, so the listening socket is never closed while another thread is
/// about to use it.
void Server::Private::check() {
    m_connections.dropHandshakes(longestHandshake);
    if (!isTerminationPending())
        return;
    m_server.stop();
    m_connections.shutDown();
}

void Server::Private::run() {
    if (!m_server.listen_after_bind())
        throw std::runtime_error("the listening socket failed");
}

Server::Server(Certificate const& certificate, std::string const& host, int port)
    : m_private(std::make_unique<Private>(certificate, host, port)) {}

Server::~Server() = default;

int Server::port() const {
    return m_private->m_port;
}

void Server::run(Handler handler, std::chrono::milliseconds delay, std::vector<Fault> faults) {
    m_private->m_handler = std::move(handler);
    m_private->m_delay = delay;
    m_private->m_faults = std::move(faults);
    m_private->run();
}

} // namespace devgateway
