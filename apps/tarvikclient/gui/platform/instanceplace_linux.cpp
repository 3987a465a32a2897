#include "tarvikclient/gui/platform/instanceplace.h"

#include "base/exception.h"
#include "base/file.h"
#include "base/log.h"
#include "base/ownfile.h"
#include "openssl/md5_wrapper.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace quillon::instance {

namespace {

// Without the sticky bit a file of the runtime directory may be cleaned up while the client runs.
constexpr mode_t fileMode = S_ISVTX | S_IRUSR | S_IWUSR;

void logError(String const& text) {
    log(ERROR, "SingleInstance", "claim", text);
}

/// Of the user's own, a plain file with one name or a directory that nobody else can enter.
bool isOwn(Descriptor const& entry, mode_t type) {
    struct stat info {};
    if (!entry || fstat(entry.number(), &info) != 0 || info.st_uid != geteuid())
        return false;
    return (info.st_mode & S_IFMT) == type &&
           (type == S_IFDIR ? (info.st_mode & ACCESSPERMS) == S_IRWXU : info.st_nlink == 1);
}

/// None unless it is the user's own.
Descriptor ifOwn(Descriptor entry, mode_t type) {
    return isOwn(entry, type) ? std::move(entry) : Descriptor();
}

Descriptor openDirectory(char const* path, int flags) {
    return Descriptor(::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags));
}

/// The one that the desktop's session gives the user on this machine, if it is what it has to be.
Descriptor runtimeDirectory() {
    char const* const given = std::getenv("XDG_RUNTIME_DIR");
    if (!given || *given != '/')
        return Descriptor();
    std::string path(given); // with a slash behind, a link would be followed
    path.erase(path.find_last_not_of('/') + 1);
    return ifOwn(openDirectory(path.c_str(), O_NOFOLLOW), S_IFDIR);
}

Descriptor dataDirectory(String const& path) {
    try {
        File::ensureDirectory(path);
    } catch (Exception const&) {
        return Descriptor(); // which has been logged, and ends the client that is to be
    }
    Descriptor directory = openDirectory(path.str(), 0);
    // The client itself will do so too; a fallback to the current directory stays as it is.
    if (directory && path.ends("/.Tarvik/"))
        fchmod(directory.number(), S_IRWXU);
    return ifOwn(std::move(directory), S_IFDIR);
}

Descriptor openLock(Descriptor const& directory, std::string const& name) {
    return openOwnFile(directory.number(), name.c_str(), O_RDWR | O_CREAT, fileMode);
}

/// The kind of lock that belongs to the process: one that belongs to the open file would live on in a child
/// that a module forks and that does not start a program.
bool lock(Descriptor const& file) {
    struct flock whole {};
    whole.l_type = F_WRLCK;
    whole.l_whence = SEEK_SET;
    return fcntl(file.number(), F_SETLK, &whole) == 0;
}

} // namespace

/// Finds the directory and opens the lock file; false, which has been logged, when that cannot be.
bool Place::open() {
    String const data = File::getUserApplicationDataDirectory();
    tls::MD5 digest;
    digest.update(Memory(data));
    m_name = "tarvikclient-" + std::string(digest.final().toHex().view());
    m_directory = runtimeDirectory();
    if (!m_directory)
        m_directory = dataDirectory(data);
    if (m_directory)
        m_lock = openLock(m_directory, m_name + ".lock");
    else
        logError("no directory of the user's own for the place: running without it");
    if (m_directory && !m_lock)
        logError("the place is taken by a stranger: running without it");
    return static_cast<bool>(m_lock);
}

Place::Claim Place::claim() {
    if (!m_lock && !open())
        return Claim::none;
    if (lock(m_lock)) {
        if (listen())
            return Claim::held;
        logError(String("cannot listen for other processes: ") + strerror(errno));
    } else if (errno == EACCES || errno == EAGAIN) {
        return Claim::occupied;
    } else {
        logError(String("the place cannot be locked: ") + strerror(errno));
    }
    m_lock = Descriptor();
    return Claim::none;
}

/// With the lock held: a socket that is there has been left behind.
bool Place::listen() {
    std::string const name = m_name + ".socket";
    sockaddr_un const where = address();
    unlinkat(m_directory.number(), name.c_str(), 0);
    m_listener = Descriptor(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
    if (!m_listener ||
        bind(m_listener.number(), reinterpret_cast<sockaddr const*>(&where), sizeof where) != 0)
        return false;
    return fchmodat(m_directory.number(), name.c_str(), fileMode, 0) == 0 &&
           ::listen(m_listener.number(), SOMAXCONN) == 0;
}

/// By the directory's descriptor: its path may be longer than an address can be.
sockaddr_un Place::address() const {
    std::string const path =
        "/proc/self/fd/" + std::to_string(m_directory.number()) + "/" + m_name + ".socket";
    sockaddr_un result{};
    result.sun_family = AF_UNIX;
    path.copy(result.sun_path, sizeof result.sun_path - 1);
    return result;
}

Place::~Place() {
    if (m_listener)
        unlinkat(m_directory.number(), (m_name + ".socket").c_str(), 0);
}

} // namespace quillon::instance
