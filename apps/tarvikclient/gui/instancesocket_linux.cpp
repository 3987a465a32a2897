// The name is in the abstract namespace: binding it is one atomic step, and it vanishes with the process
// however that ends. A file with a process id in it does neither: one that outlives a crash may name a
// stranger's process.
#include "tarvikclient/gui/instancesocket.h"

#include "base/file.h"
#include "base/log.h"
#include "openssl/md5_wrapper.h"

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

namespace quillon::instance {

namespace {

struct Address {
    sockaddr_un name{};
    socklen_t length = 0;

    sockaddr const* get() const { return reinterpret_cast<sockaddr const*>(&name); }
};

/// One place for each user and home: whoever has settings and modules of their own has a client of their own.
Address address() {
    tls::MD5 digest;
    digest.update(Memory(File::getUserApplicationDataDirectory()));
    String const name = "tarvikclient-" + toString(geteuid()) + "-" + digest.final().toHex();
    Address result;
    result.name.sun_family = AF_UNIX;
    std::copy(name.begin(), name.end(), result.name.sun_path + 1);
    result.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.length());
    return result;
}

Descriptor makeSocket() {
    return Descriptor(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
}

void setTimeout(Descriptor const& connection, int which, Deadline deadline) {
    using namespace std::chrono;
    // A time-out of 0 would mean none at all.
    auto const left = std::max(duration_cast<microseconds>(deadline - steady_clock::now()).count(), 1000L);
    timeval const value{left / 1000000, left % 1000000};
    setsockopt(connection.number(), SOL_SOCKET, which, &value, sizeof value);
}

Handover whyNotConnected(int error) {
    if (error == EAGAIN)
        return Handover::silent; // so many are waiting that there was no room for one more
    return error == ECONNREFUSED || error == EINTR ? Handover::absent : Handover::broken;
}

bool sendUrl(Descriptor const& connection, String const& url) {
    iovec parts[] = {{const_cast<char*>(greeting.data()), greeting.size()},
                     {const_cast<char*>(url.array()), url.length()}};
    msghdr message{};
    message.msg_iov = parts;
    message.msg_iovlen = 2;
    return sendmsg(connection.number(), &message, MSG_NOSIGNAL) >= 0;
}

Handover awaitAnswer(Descriptor const& connection, Deadline deadline) {
    for (;;) {
        setTimeout(connection, SO_RCVTIMEO, deadline);
        char answer = 0;
        ssize_t const count = recv(connection.number(), &answer, 1, 0);
        if (count > 0)
            return Handover::done;
        if (count < 0 && errno == EAGAIN)
            return Handover::silent;
        // The URL has been sent: after a mere interruption it must not be sent again.
        if (count == 0 || errno != EINTR)
            return Handover::broken;
    }
}

} // namespace

Descriptor takePlace(bool& occupied) {
    Address const place = address();
    Descriptor listener = makeSocket();
    bool const bound = listener && bind(listener.number(), place.get(), place.length) == 0;
    occupied = listener && !bound && errno == EADDRINUSE;
    if (bound && listen(listener.number(), SOMAXCONN) == 0)
        return listener;
    if (!occupied)
        log(ERROR, "SingleInstance", "claim",
            String("cannot listen for other processes: ") + strerror(errno));
    return Descriptor();
}

Handover handOver(String const& url, Deadline deadline) {
    Address const place = address();
    Descriptor const connection = makeSocket();
    setTimeout(connection, SO_SNDTIMEO, deadline);
    if (connect(connection.number(), place.get(), place.length) != 0)
        return whyNotConnected(errno);
    // The URL carries the user's ticket.
    if (!isOwnUser(connection))
        return Handover::foreign;
    if (url.empty())
        return Handover::done;
    return sendUrl(connection, url) ? awaitAnswer(connection, deadline) : Handover::broken;
}

bool isOwnUser(Descriptor const& connection) {
    ucred peer{};
    socklen_t length = sizeof peer;
    return getsockopt(connection.number(), SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 &&
           peer.uid == geteuid();
}

} // namespace quillon::instance
