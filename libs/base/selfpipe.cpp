#include "base/selfpipe.h"

#include <fcntl.h>
#include <poll.h>

#include <cerrno>
#include <system_error>

namespace quillon {

SelfPipe::SelfPipe() {
    int ends[2];
    if (pipe(ends) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    m_read = Descriptor(ends[0]);
    m_write = Descriptor(ends[1]);
    for (int const end : ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
}

void SelfPipe::wake() noexcept {
    int const savedErrno = errno;
    [[maybe_unused]] ssize_t const written = write(m_write.number(), "", 1);
    errno = savedErrno;
}

bool SelfPipe::take() noexcept {
    char bytes[64];
    bool taken = false;
    while (read(m_read.number(), bytes, sizeof bytes) > 0)
        taken = true;
    return taken;
}

void SelfPipe::await() {
    // A signal always ends poll(), where read() would be taken up again: ThreadSanitizer runs handlers
    // between two calls only.
    pollfd readable{m_read.number(), POLLIN, 0};
    char byte = 0;
    while (poll(&readable, 1, -1) != 1 || read(m_read.number(), &byte, 1) != 1)
        if (errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "read");
}

} // namespace quillon
