#include "base/ownfile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace quillon {

Descriptor openOwnFile(int directory, char const* name, int flags, unsigned mode) {
    // A FIFO would be waited for, and what a link leads to is not this user's choice.
    Descriptor file(::openat(directory, name, flags | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, mode));
    struct stat info {};
    if (!file || fstat(file.number(), &info) != 0)
        return Descriptor();
    // A second name may be another user's, put where this one will be told to write.
    if (S_ISREG(info.st_mode) && info.st_uid == geteuid() && info.st_nlink == 1)
        return file;
    errno = EPERM;
    return Descriptor();
}

bool writeAll(Descriptor const& file, std::string_view bytes) {
    while (!bytes.empty()) {
        ssize_t const written = ::write(file.number(), bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            return false;
        bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace quillon
