#include "devgateway/connections.h"

#include <sys/socket.h>

#include <memory>

namespace devgateway {

/// Belongs to the SSL object of a connection, which frees it (onSslFree) before its socket is closed.
class Connections::Entry {
public:
    Entry(Connections& owner, int socket) : m_owner(owner), m_socket(socket) { m_owner.add(m_socket); }
    ~Entry() { m_owner.remove(m_socket); }
    void shaken() { m_owner.shaken(m_socket); }
    Entry(Entry const&) = delete;
    Entry& operator=(Entry const&) = delete;

private:
    Connections& m_owner;
    int const m_socket;
};

void Connections::attachTo(SSL_CTX& context) {
    entryIndex();
    SSL_CTX_set_app_data(&context, this);
    SSL_CTX_set_info_callback(&context, &Connections::onSslEvent);
}

void Connections::shutDown() {
    std::lock_guard const lock(m_mutex);
    m_isClosing = true;
    for (auto const& [socket, begun] : m_sockets)
        ::shutdown(socket, SHUT_RDWR);
    m_closing.notify_all();
}

void Connections::dropHandshakes(std::chrono::milliseconds longest) {
    std::lock_guard const lock(m_mutex);
    auto const latest = Clock::now() - longest;
    for (auto const& [socket, begun] : m_sockets)
        if (begun && *begun < latest)
            ::shutdown(socket, SHUT_RDWR);
}

void Connections::sleepFor(std::chrono::milliseconds time) {
    std::unique_lock lock(m_mutex);
    m_closing.wait_for(lock, time, [this] { return m_isClosing; });
}

/// Called by OpenSSL on the thread that serves the connection.
void Connections::onSslEvent(SSL const* ssl, int where, int) noexcept {
    if (auto* const known = static_cast<Entry*>(SSL_get_ex_data(ssl, entryIndex()))) {
        if (where & SSL_CB_HANDSHAKE_DONE)
            known->shaken();
        return;
    }
    if (!(where & SSL_CB_HANDSHAKE_START))
        return;
    auto* self = static_cast<Connections*>(SSL_CTX_get_app_data(SSL_get_SSL_CTX(ssl)));
    auto entry = std::make_unique<Entry>(*self, SSL_get_fd(ssl));
    // The callback's type promises not to change the connection's state, and attaching data does not.
    if (SSL_set_ex_data(const_cast<SSL*>(ssl), entryIndex(), entry.get()))
        std::ignore = entry.release(); // it is the connection's now
}

void Connections::onSslFree(void*, void* entry, CRYPTO_EX_DATA*, int, long, void*) noexcept {
    delete static_cast<Entry*>(entry);
}

int Connections::entryIndex() {
    static int const index = SSL_get_ex_new_index(0, nullptr, nullptr, nullptr, &Connections::onSslFree);
    return index;
}

void Connections::add(int socket) {
    std::lock_guard const lock(m_mutex);
    m_sockets[socket] = Clock::now();
    if (m_isClosing)
        ::shutdown(socket, SHUT_RDWR);
}

void Connections::shaken(int socket) {
    std::lock_guard const lock(m_mutex);
    m_sockets[socket].reset();
}

void Connections::remove(int socket) {
    std::lock_guard const lock(m_mutex);
    m_sockets.erase(socket);
}

} // namespace devgateway
