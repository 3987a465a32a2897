#include "base/logstream.h"

#include "base/ownfile.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <system_error>

namespace quillon {

namespace {

constexpr auto patience = std::chrono::milliseconds(1000);
constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;

bool isPlainFile(int descriptor) {
    struct stat info {};
    return fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode);
}

String lastError() {
    return String::copyOf(std::generic_category().message(errno));
}

} // namespace

LogStream::LogStream(FILE* file) : m_file(file), m_descriptor(fileno(file)) {}

LogStream::~LogStream() {
    if (m_file != stdout && m_file != stderr)
        std::fclose(m_file);
}

std::shared_ptr<LogStream> LogStream::open(String const& path, String& reason) {
    if (path.find('\0') != String::npos) { // C code would open another file
        reason = "the name is none";
        return nullptr;
    }
    Descriptor descriptor = openOwnFile(AT_FDCWD, path.str(), O_WRONLY | O_CREAT, ownerOnly);
    if (!descriptor) {
        reason =
            errno == EPERM ? String("it is not a plain file of this user's own with one name") : lastError();
        return nullptr;
    }
    // Cut only now that it is known to be no one else's.
    FILE* const file = fchmod(descriptor.number(), ownerOnly) == 0 && ftruncate(descriptor.number(), 0) == 0
                           ? fdopen(descriptor.number(), "w")
                           : nullptr;
    if (!file) {
        reason = lastError();
        return nullptr;
    }
    descriptor.release();
    return std::make_shared<LogStream>(file);
}

void LogStream::write(std::string_view line) {
    bool const mayWait = !isPlainFile(m_descriptor); // asked anew: standard output can become another one
    if (!mayWait)
        lseek(m_descriptor, 0, SEEK_END);
    Deadline const deadline(patience);
    while (!line.empty() && (!mayWait || awaitRoom(deadline))) {
        // So much fits into a pipe that has room at all; more would wait for its reader.
        std::size_t const piece = mayWait ? std::min<std::size_t>(line.size(), PIPE_BUF) : line.size();
        ssize_t const written = ::write(m_descriptor, line.data(), piece);
        if (written < 0 && errno != EINTR)
            return;
        line.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
}

bool LogStream::awaitRoom(Deadline const& deadline) {
    int ready;
    do {
        pollfd room{m_descriptor, POLLOUT, 0};
        ready = poll(&room, 1, m_stuck ? 0 : static_cast<int>(deadline.left()));
    } while (ready < 0 && errno == EINTR);
    m_stuck = ready == 0;
    return !m_stuck;
}

} // namespace quillon
