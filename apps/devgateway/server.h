// The HTTPS server: sockets, TLS, worker threads, the request log, and the faults of the wire.
#pragma once

#include "devgateway/certificate.h"
#include "devgateway/faults.h"
#include "devgateway/message.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace devgateway {

class Server {
public:
    /// Answers one request. Called by several worker threads at a time.
    using Handler = std::function<Reply(Request const&)>;

    /// Listens from here on; clients may connect, and wait for run(). Port 0 picks a free port.
    /// Throws std::runtime_error.
    Server(Certificate const& certificate, std::string const& host, int port);
    ~Server();

    /// The port that is listened on.
    int port() const;

    /// Serves on worker threads until SIGINT or SIGTERM (held back, see termination.h) arrives, then
    /// ends every connection, waits for the workers and returns. To be called once.
    /// Throws std::runtime_error when the listening socket fails.
    void run(Handler handler, std::chrono::milliseconds delay, std::vector<Fault> faults);

private:
    class Private;
    std::unique_ptr<Private> m_private;
};

} // namespace devgateway
