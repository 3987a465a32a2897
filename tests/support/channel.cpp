#include "support/channel.h"

#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>

namespace quillon::test {

namespace {

// Takes the text up to `separator` off the front of `text`.
std::string_view cut(std::string_view& text, std::string_view separator) {
    std::size_t const end = text.find(separator);
    std::string_view const piece = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + separator.size());
    return piece;
}

Request parseHead(std::string_view head) {
    Request request;
    std::string_view line = cut(head, "\r\n");
    request.method = cut(line, " ");
    request.target = cut(line, " ");
    while (!head.empty()) {
        std::string_view value = cut(head, "\r\n");
        std::string_view const name = cut(value, ":");
        value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
        request.headers.emplace_back(name, value);
    }
    return request;
}

std::size_t contentLength(Request const& request) {
    std::string const text = request.header("Content-Length");
    std::size_t length = 0;
    std::from_chars(text.data(), text.data() + text.size(), length);
    return length;
}

} // namespace

void Channel::Free::operator()(ssl_st* tls) const {
    SSL_free(tls);
}

Channel::Channel(int socket, ssl_ctx_st* context)
    : m_socket(socket), m_tls(context ? SSL_new(context) : nullptr) {
    if (m_tls)
        SSL_set_fd(m_tls.get(), socket);
}

Channel::~Channel() = default;

bool Channel::handshake() {
    if (!m_ready)
        m_ready = !m_tls || SSL_accept(m_tls.get()) == 1;
    return m_ready;
}

bool Channel::receive() {
    char buffer[16 * 1024];
    long const count = m_tls ? SSL_read(m_tls.get(), buffer, sizeof buffer)
                             : static_cast<long>(::recv(m_socket, buffer, sizeof buffer, 0));
    if (count <= 0)
        return false;
    m_received.append(buffer, static_cast<std::size_t>(count));
    return true;
}

std::optional<Request> Channel::readRequest() {
    constexpr std::string_view headEnd = "\r\n\r\n";
    if (!handshake())
        return std::nullopt;
    std::size_t end;
    for (std::size_t searched = 0; (end = m_received.find(headEnd, searched)) == std::string::npos;) {
        searched = m_received.size() - std::min(m_received.size(), headEnd.size() - 1);
        if (!receive())
            return std::nullopt;
    }
    Request request = parseHead(std::string_view(m_received).substr(0, end));
    m_received.erase(0, end + headEnd.size());

    std::size_t const length = contentLength(request);
    if (request.hasHeader("Expect") && m_received.size() < length && !write("HTTP/1.1 100 Continue\r\n\r\n"))
        return std::nullopt;
    while (m_received.size() < length)
        if (!receive())
            return std::nullopt;
    request.body = m_received.substr(0, length);
    m_received.erase(0, length);
    return request;
}

bool Channel::write(std::string_view bytes) {
    constexpr std::size_t atOnce = 1 << 20;
    while (!bytes.empty()) {
        std::size_t const size = std::min(bytes.size(), atOnce);
        long const count = m_tls ? SSL_write(m_tls.get(), bytes.data(), static_cast<int>(size))
                                 : static_cast<long>(::send(m_socket, bytes.data(), size, 0));
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

void Channel::shutDown() {
    if (m_tls && m_ready)
        SSL_shutdown(m_tls.get());
}

} // namespace quillon::test
