#include "tarvikclient/gui/platform/instancesocket.h"

#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace quillon::instance {

namespace {

void setTimeout(Descriptor const& connection, int which, Deadline const& deadline) {
    unsigned const left = std::max(deadline.left(), 1u); // a time-out of 0 would mean none at all
    timeval const value{left / 1000, left % 1000 * 1000L};
    setsockopt(connection.number(), SOL_SOCKET, which, &value, sizeof value);
}

Handover whyNotConnected(int error) {
    if (error == EAGAIN)
        return Handover::silent; // so many are waiting that there was no room for one more
    for (int const stranger : {EACCES, EPERM, EPROTOTYPE, ELOOP, ENOTDIR})
        if (error == stranger)
            return Handover::foreign;
    // The holder of the place may not have come to listen yet.
    return error == ECONNREFUSED || error == ENOENT || error == EINTR ? Handover::absent : Handover::broken;
}

bool sendUrl(Descriptor const& connection, String const& url) {
    iovec parts[] = {{const_cast<char*>(greeting.data()), greeting.size()},
                     {const_cast<char*>(url.array()), url.length()}};
    msghdr message{};
    message.msg_iov = parts;
    message.msg_iovlen = 2;
    return sendmsg(connection.number(), &message, MSG_NOSIGNAL) >= 0;
}

Handover awaitAnswer(Descriptor const& connection, Deadline const& deadline) {
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

Handover handOver(Place const& place, String const& url, Deadline const& deadline) {
    sockaddr_un const where = place.address();
    Descriptor const connection(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
    setTimeout(connection, SO_SNDTIMEO, deadline);
    if (connect(connection.number(), reinterpret_cast<sockaddr const*>(&where), sizeof where) != 0)
        return whyNotConnected(errno);
    // The URL carries the user's ticket.
    if (!isOwnUser(connection))
        return Handover::foreign;
    if (!sendUrl(connection, url))
        return Handover::broken;
    // Without a URL nothing is lost with a process that does not listen.
    return url.empty() ? Handover::done : awaitAnswer(connection, deadline);
}

bool isOwnUser(Descriptor const& connection) {
    ucred peer{};
    socklen_t length = sizeof peer;
    return getsockopt(connection.number(), SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 &&
           peer.uid == geteuid();
}

} // namespace quillon::instance
