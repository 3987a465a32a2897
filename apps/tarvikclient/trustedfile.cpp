#include "tarvikclient/trustedfile.h"

#include "base/descriptor.h"
#include "base/file.h"
#include "base/stringconversion.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace quillon {

namespace {

constexpr off_t maxSize = 64L * 1024;

/// One reading of a file.
class Reading {
public:
    Reading(String const& path, uid_t owner) : m_path(path), m_owner(owner) {}

    std::optional<String> content() {
        Descriptor const directory = open(AT_FDCWD, File::getFolderName(m_path), O_DIRECTORY);
        if (!directory)
            return std::nullopt;
        trusted(directory);
        Descriptor const file = open(directory.number(), File::getFileName(m_path), O_NONBLOCK);
        if (!file)
            return std::nullopt;
        struct stat const before = trusted(file);
        if (!S_ISREG(before.st_mode))
            refuse("is not a plain file");
        if (before.st_size > maxSize)
            refuse("is too large");
        String const text = read(file);
        struct stat const after = trusted(file);
        // Written in place meanwhile: half of the old policy and half of the new one is neither. The clock of
        // files may stand still between two writes, and so the file is read again.
        bool const rewritten = before.st_mtime != after.st_mtime || text.length() != after.st_size ||
                               lseek(file.number(), 0, SEEK_SET) != 0 || read(file) != text;
        if (rewritten)
            refuse("changes while it is read");
        return text;
    }

private:
    [[noreturn]] static void refuse(String const& reason, Place place = std::source_location::current()) {
        throw EUntrustedFile(reason, place);
    }

    /// None where there is nothing of that name.
    static Descriptor open(int directory, String const& name, int flags) {
        Descriptor opened(openat(directory, name.str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | flags));
        if (!opened && errno != ENOENT)
            refuse(String("cannot be opened: ") + std::strerror(errno));
        return opened;
    }

    /// What the system says of a file or directory that is the owner's alone.
    struct stat trusted(Descriptor const& opened) const {
        struct stat status {};
        if (fstat(opened.number(), &status) != 0)
            refuse(String("cannot be examined: ") + std::strerror(errno));
        char const* const what = S_ISDIR(status.st_mode) ? "its directory" : "it";
        if (status.st_uid != m_owner)
            refuse(String(what) + " belongs to user " + toString(status.st_uid));
        if (status.st_mode & (S_IWGRP | S_IWOTH))
            refuse(String(what) + " is writable by others than its owner");
        return status;
    }

    static String read(Descriptor const& file) {
        String text;
        char piece[4096];
        ssize_t count = 0;
        while ((count = ::read(file.number(), piece, sizeof piece)) != 0) {
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0)
                refuse(String("cannot be read: ") + std::strerror(errno));
            text.append(piece, static_cast<unsigned>(count));
            if (text.length() > maxSize)
                refuse("is too large");
        }
        return text;
    }

    String m_path;
    uid_t m_owner;
};

} // namespace

std::optional<String> readTrustedFile(String const& path, uid_t owner) {
    return Reading(path, owner).content();
}

} // namespace quillon
