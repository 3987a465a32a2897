#include "tarvikclient/downloadManager.h"

#include "base/condition.h"
#include "base/confhelper.h"
#include "base/failure.h"
#include "base/file.h"
#include "base/safepath.h"
#include "curl/requestinfo.h"
#include "http/loggableuri.h"
#include "http/uri.h"
#include "openssl/md5_wrapper.h"
#include "tarvikclient/moduledirectory.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <exception>

namespace quillon {

namespace {

constexpr unsigned statusOk = 200;

void logFailure(String const& text) {
    log(ERROR, "DownloadManager", "downloadFileTo", text);
}

/// The kind of what stands at a path, a link for itself; 0 when there is nothing.
mode_t kindOf(String const& path) {
    struct stat info {};
    return lstat(path.str(), &info) == 0 ? info.st_mode & S_IFMT : 0;
}

/// Takes away what a download replaces. False for what it must not: directories, and the system's devices.
bool makeWay(String const& path) {
    switch (kindOf(path)) {
    case S_IFDIR:
    case S_IFCHR:
    case S_IFBLK:
        return false;
    default:
        return unlink(path.str()) == 0 || errno == ENOENT;
    }
}

/// Leaves a file empty at the end of a scope unless it is to be kept.
class Emptied {
public:
    explicit Emptied(File& file) : m_file(file) {}
    ~Emptied() {
        if (!m_kept)
            m_file.closeEmpty();
    }
    Emptied(Emptied const&) = delete;
    Emptied& operator=(Emptied const&) = delete;

    void keep() { m_kept = true; }

private:
    File& m_file;
    bool m_kept = false;
};

/// The calls of the delegate that are under way, on whatever threads modules make them.
class DelegateCalls {
public:
    /// Never destroyed: a module's thread may outlive main().
    static DelegateCalls& instance() {
        static auto& calls = *new DelegateCalls;
        return calls;
    }
    void enter() {
        TSynchronize<Mutex> lock(m_mutex);
        ++m_count;
    }
    void leave() {
        TSynchronize<Mutex> lock(m_mutex);
        if (--m_count == 0)
            m_left.broadcast();
    }
    void awaitNone() {
        TSynchronize<Mutex> lock(m_mutex);
        while (m_count != 0)
            m_left.wait(m_mutex);
    }

private:
    Mutex m_mutex;
    Condition m_left;
    unsigned m_count = 0;
};

class DelegateCall {
public:
    DelegateCall() { DelegateCalls::instance().enter(); }
    ~DelegateCall() { DelegateCalls::instance().leave(); }
    DelegateCall(DelegateCall const&) = delete;
    DelegateCall& operator=(DelegateCall const&) = delete;
};

} // namespace

std::atomic<DownloadManager*> DownloadManager::StaticDownloadWrapper::m_downloadManager{nullptr};

void DownloadManager::DownloadConfig::write(IKeyReader& reader) {
    ConfReadHelper::readKey(reader, "filename", filename, ConfReadHelper::required);
    ConfReadHelper::readKey(reader, "md5", md5, ConfReadHelper::optional);
    ConfReadHelper::readKey(reader, "urlpath", urlpath, ConfReadHelper::required);
}

DownloadManager::~DownloadManager() {
    // A module's thread that calls the delegate later is refused instead of reaching a dead object.
    DownloadManager* self = this;
    StaticDownloadWrapper::m_downloadManager.compare_exchange_strong(self, nullptr);
    // One that came earlier still uses this one.
    m_session.cancel();
    DelegateCalls::instance().awaitNone();
}

void DownloadManager::setServer(String const& authority) {
    TSynchronize<Mutex> lock(m_serverMutex);
    m_server = authority.owned();
}

String DownloadManager::urlOf(String const& url) const {
    http::Uri uri = http::Uri::parse(url, true);
    if (uri.getScheme().empty()) {
        // Without its slash the path would run into the host's name.
        if (uri.getAuthority().empty() && !url.starts('/'))
            uri = http::Uri::parse("/" + url, true);
        uri.setScheme("https");
        TSynchronize<Mutex> lock(m_serverMutex);
        uri.setAuthority(m_server);
    }
    return uri.getFullUri();
}

bool DownloadManager::downloadFileTo(String const& url, String const& path, unsigned long limit) noexcept {
    try {
        return transfer(url, path, limit);
    } catch (std::exception const& e) {
        traceCaught(e);
    }
    logFailure("Error while downloding '" + path + "' from '" + http::loggableUri(url) + "'");
    return false;
}

bool DownloadManager::transfer(String const& url, String const& path, unsigned long limit) {
    File::ensureDirectory(File::getSubPath(path));
    log(TRACE, "DownloadManager", "downloadFileTo", http::loggableUri(url) + " -> " + path);
    String const fullUrl = urlOf(url);
    File file;
    if (!makeWay(path) || !file.open(path, File::out | File::exclusive)) {
        logFailure("Cannot open file \"" + path + "\"");
        return false;
    }
    file.limitSize(limit);
    if (fill(file, fullUrl))
        return true;
    logFailure("Error while downloding '" + path + "' from '" + http::loggableUri(fullUrl) + "'");
    return false;
}

bool DownloadManager::fill(File& file, String const& url) {
    Emptied guard(file);
    RequestInfo information;
    if (!m_session.request(url, file, information) ||
        information.getResponseHeader().getResponseCode() != statusOk || !file.flush())
        return false;
    guard.keep();
    return file.close();
}

bool DownloadManager::isPresent(DownloadConfig const& config, String const& path) {
    // A FIFO would be waited for.
    return kindOf(path) == S_IFREG && File::exists(path) && computeFileMd5(path) == config.md5;
}

String DownloadManager::downloadFromConfig(DownloadConfig const& config, String const& directory,
                                           unsigned long limit) {
    if (!staysInDirectory(config.filename, "DownloadManager", "downloadFromConfig"))
        return String::null;
    String path = directory + "/" + config.filename;
    if (isPresent(config, path) || downloadFileTo(config.urlpath + config.filename, path, limit))
        return path;
    return String::null;
}

String DownloadManager::computeFileMd5(String const& path) {
    File file;
    if (!file.open(path, File::in))
        fail<EFile>("DownloadManager", "computeFileMd5", "Cannot open file \"" + path + "\"");
    tls::MD5 digest;
    return digest.computehash(file).toHex();
}

bool DownloadManager::StaticDownloadWrapper::downloadFileTo(char* url, char* path) {
    try {
        DelegateCall const call; // counted before the manager is looked at, which its destructor relies on
        DownloadManager* const manager = m_downloadManager.load();
        if (!manager) {
            log(ERROR, "StaticDownloadWrapper", "downloadFromConfig",
                "StaticDownloadWrapper is not configured !");
            return false;
        }
        return url && path && manager->downloadFileTo(String(url), String(path));
    } catch (...) { // the caller is a module's C code
        return false;
    }
}

bool staysInDirectory(String const& name, char const* cls, char const* method) {
    bool const isSafe = isSafeRelativePath(name);
    if (isSafe && !ModuleDirectory::isReserved(name))
        return true;
    log(ERROR, cls, method,
        (isSafe ? "Name is one of the client's own: '" : "Name leaves its directory: '") + name + "'");
    return false;
}

void REMOVE(String const& path) {
    if (!File::exists(path))
        return;
    try {
        File::remove(path);
    } catch (EFile const&) {
        log(ERROR, "TarvikClientPluginDll", "downloadDll",
            "File '" + path + "' already exists and cannot be removed");
        throw;
    }
}

void RENAME(String const& from, String const& to) {
    try {
        File::move(from, to);
    } catch (EFile const&) {
        log(ERROR, "TarvikClient", "downloadWindowsDll", "missing " + from + " in archive");
        throw;
    }
}

} // namespace quillon
