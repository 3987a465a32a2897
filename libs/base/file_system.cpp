// Paths, directories and time stamps.
#include "base/file.h"

#include "base/log.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

namespace quillon {

namespace {

[[noreturn]] void throwFile(int line) {
    throw EFile("EFile", "libs/base/file.cpp", line);
}

/// Logs why the system refused `method` on `path`, and throws.
[[noreturn]] void fail(char const* method, String const& path, int error, int line) {
    log(ERROR, "File", method, path + ": " + std::generic_category().message(error).c_str());
    throwFile(line);
}

String unified(String const& path) {
    return path.replace('\\', '/');
}

std::filesystem::path native(String const& path) {
    return std::filesystem::path(unified(path).view());
}

/// C code would take a path with a NUL for the one that ends there, and with it somebody else's file.
bool isNoPath(String const& path) {
    return path.find('\0') != String::npos;
}

void refuseNoPath(String const& path, char const* method, int line) {
    if (isNoPath(path))
        fail(method, path, EINVAL, line);
}

bool statPath(String const& path, struct stat& info) {
    return !isNoPath(path) && stat(unified(path).str(), &info) == 0;
}

struct stat statOf(String const& path, char const* method, int line) {
    struct stat info {};
    refuseNoPath(path, method, line);
    if (!statPath(path, info))
        fail(method, path, errno, line);
    return info;
}

constexpr mode_t ownerOnly = S_IRWXU;

} // namespace

bool File::exists(String const& path) {
    if (isNoPath(path))
        return false;
    int const descriptor = ::open(unified(path).str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    struct stat info {};
    bool const isFile = fstat(descriptor, &info) == 0 && !S_ISDIR(info.st_mode);
    ::close(descriptor);
    return isFile;
}

void File::remove(String const& path) {
    if (isNoPath(path) || std::remove(unified(path).str()) != 0)
        throwFile(__LINE__);
}

void File::move(String const& from, String const& to) {
    refuseNoPath(from, "move", __LINE__);
    refuseNoPath(to, "move", __LINE__);
    if (std::rename(unified(from).str(), unified(to).str()) == 0)
        return;
    if (int const error = errno; error != EXDEV || isDirectory(from))
        fail("move", from, error, __LINE__);
    copy(from, to);
    remove(from);
}

void File::copy(String const& from, String const& to) {
    refuseNoPath(from, "copy", __LINE__);
    refuseNoPath(to, "copy", __LINE__);
    std::error_code error;
    std::filesystem::copy_file(native(from), native(to), std::filesystem::copy_options::overwrite_existing,
                               error);
    if (error)
        fail("copy", from, error.value(), __LINE__);
}

bool File::isDirectory(String const& path) {
    struct stat info {};
    return statPath(path, info) && S_ISDIR(info.st_mode);
}

void File::createDirectory(String const& path) {
    refuseNoPath(path, "createDirectory", __LINE__);
    String const whole = unified(path);
    for (unsigned slash = 0; slash != String::npos;) {
        slash = whole.find('/', slash + 1);
        String const parent = whole.range(0, slash);
        if (mkdir(parent.str(), ownerOnly) != 0 && !isDirectory(parent)) {
            log(ERROR, "File", "createDirectory", "cannot create directory " + parent);
            throwFile(__LINE__);
        }
    }
}

void File::ensureDirectory(String const& path) {
    if (!isDirectory(path))
        createDirectory(path);
}

void File::removeDirectory(String const& path) {
    refuseNoPath(path, "removeDirectory", __LINE__);
    if (rmdir(unified(path).str()) != 0)
        fail("removeDirectory", path, errno, __LINE__);
}

void File::eraseDirectory(String const& path) {
    refuseNoPath(path, "eraseDirectory", __LINE__);
    std::error_code error;
    std::filesystem::remove_all(native(path), error);
    if (error)
        fail("eraseDirectory", path, error.value(), __LINE__);
}

String File::getFileName(String const& path) {
    return unified(path).rright('/');
}

String File::getFolderName(String const& path) {
    String const whole = unified(path);
    unsigned const slash = whole.rfind('/');
    return slash == String::npos ? String() : whole.range(0, slash);
}

String File::getFileExtension(String const& path) {
    String const name = getFileName(path);
    unsigned const dot = name.rfind('.');
    return dot == String::npos ? String() : name.range(dot + 1);
}

String File::getSubPath(String const& path) {
    String const whole = unified(path).remove('"');
    if (whole.length() < 2)
        return path;
    unsigned const slash = whole.rfind('/', whole.length() - 2);
    return slash == String::npos ? path : whole.range(0, slash + 1);
}

unsigned long File::getFileSize(String const& path) {
    struct stat info {};
    return statPath(path, info) ? static_cast<unsigned long>(info.st_size) : 0;
}

unsigned long File::getSize(String const& path) {
    if (!isDirectory(path))
        return getFileSize(path);
    List<String> files;
    getRecursiveFilesList(path, files);
    unsigned long total = 0;
    for (String const& file : files)
        total += getFileSize(path + "/" + file);
    return total;
}

String File::getUserApplicationDataDirectory() {
    // The login name that the system knows is not consulted: a client started without HOME and USER keeps its
    // files where it was started, as it always has.
    String base;
    if (char const* const home = std::getenv("HOME"))
        base.append(home);
    else if (char const* const user = std::getenv("USER"))
        base.append("/home/", user);
    if (base.empty()) {
        log(TRACE, "File", "getUserApplicationDataDirectory",
            "can not retrieve user application data folder");
        return getCurrentDirectory();
    }
    return base.append("/.Tarvik/");
}

String File::getCurrentDirectory() {
    std::error_code error;
    std::filesystem::path const directory = std::filesystem::current_path(error);
    return String::copyOf(directory.native());
}

DateTime File::getFileLastWrite(String const& path) {
    return DateTime(statOf(path, "getFileLastWrite", __LINE__).st_mtime);
}

DateTime File::getFileLastAccess(String const& path) {
    return DateTime(statOf(path, "getFileLastAccess", __LINE__).st_atime);
}

DateTime File::getFileLastChange(String const& path) {
    return DateTime(statOf(path, "getFileLastChange", __LINE__).st_ctime);
}

namespace {

void setTimes(String const& path, timespec access, timespec write, char const* method, int line) {
    refuseNoPath(path, method, line);
    timespec const times[2] = {access, write};
    if (utimensat(AT_FDCWD, unified(path).str(), times, 0) != 0)
        fail(method, path, errno, line);
}

constexpr timespec unchanged{0, UTIME_OMIT};

} // namespace

void File::setFileLastWrite(String const& path, DateTime const& time) {
    setTimes(path, unchanged, {time.seconds(), 0}, "setFileLastWrite", __LINE__);
}

void File::setFileLastAccess(String const& path, DateTime const& time) {
    setTimes(path, {time.seconds(), 0}, unchanged, "setFileLastAccess", __LINE__);
}

} // namespace quillon
