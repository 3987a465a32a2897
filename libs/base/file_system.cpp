// Paths, directories and time stamps.
#include "base/file.h"

#include "base/failure.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

namespace quillon {

namespace {

/// The system refused `method` on `path`.
[[noreturn]] void failSystem(char const* method, String const& path, int error,
                             Place place = std::source_location::current()) {
    fail<EFile>("File", method, path + ": " + std::generic_category().message(error).c_str(), place);
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

void refuseNoPath(String const& path, char const* method, Place place = std::source_location::current()) {
    if (isNoPath(path))
        failSystem(method, path, EINVAL, place);
}

bool statPath(String const& path, struct stat& info) {
    return !isNoPath(path) && stat(unified(path).str(), &info) == 0;
}

struct stat statOf(String const& path, char const* method, Place place = std::source_location::current()) {
    struct stat info {};
    refuseNoPath(path, method, place);
    if (!statPath(path, info))
        failSystem(method, path, errno, place);
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

void File::move(String const& from, String const& to) {
    refuseNoPath(from, "move");
    refuseNoPath(to, "move");
    if (std::rename(unified(from).str(), unified(to).str()) == 0)
        return;
    if (int const error = errno; error != EXDEV || isDirectory(from))
        failSystem("move", from, error);
    copy(from, to);
    remove(from);
}

void File::copy(String const& from, String const& to) {
    refuseNoPath(from, "copy");
    refuseNoPath(to, "copy");
    std::error_code error;
    std::filesystem::copy_file(native(from), native(to), std::filesystem::copy_options::overwrite_existing,
                               error);
    if (error)
        failSystem("copy", from, error.value());
}

bool File::isDirectory(String const& path) {
    struct stat info {};
    return statPath(path, info) && S_ISDIR(info.st_mode);
}

void File::createDirectory(String const& path) {
    refuseNoPath(path, "createDirectory");
    String const whole = unified(path);
    for (unsigned slash = 0; slash != String::npos;) {
        slash = whole.find('/', slash + 1);
        String const parent = whole.range(0, slash);
        if (mkdir(parent.str(), ownerOnly) != 0 && !isDirectory(parent))
            fail<EFile>("File", "createDirectory", "cannot create directory " + parent);
    }
}

void File::ensureDirectory(String const& path) {
    if (!isDirectory(path))
        createDirectory(path);
}

void File::removeDirectory(String const& path) {
    refuseNoPath(path, "removeDirectory");
    if (rmdir(unified(path).str()) != 0)
        failSystem("removeDirectory", path, errno);
}

void File::eraseDirectory(String const& path) {
    refuseNoPath(path, "eraseDirectory");
    std::error_code error;
    std::filesystem::remove_all(native(path), error);
    if (error)
        failSystem("eraseDirectory", path, error.value());
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
    return DateTime(statOf(path, "getFileLastWrite").st_mtime);
}

DateTime File::getFileLastAccess(String const& path) {
    return DateTime(statOf(path, "getFileLastAccess").st_atime);
}

DateTime File::getFileLastChange(String const& path) {
    return DateTime(statOf(path, "getFileLastChange").st_ctime);
}

namespace {

void setTimes(String const& path, timespec access, timespec write, char const* method,
              Place place = std::source_location::current()) {
    refuseNoPath(path, method, place);
    timespec const times[2] = {access, write};
    if (utimensat(AT_FDCWD, unified(path).str(), times, 0) != 0)
        failSystem(method, path, errno, place);
}

constexpr timespec unchanged{0, UTIME_OMIT};

} // namespace

void File::setFileLastWrite(String const& path, DateTime const& time) {
    setTimes(path, unchanged, {time.seconds(), 0}, "setFileLastWrite");
}

void File::setFileLastAccess(String const& path, DateTime const& time) {
    setTimes(path, {time.seconds(), 0}, unchanged, "setFileLastAccess");
}

} // namespace quillon
