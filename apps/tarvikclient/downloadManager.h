// Fetches files from the gateway.
#pragma once

#include "base/confhelper.h"
#include "base/mutex.h"
#include "tarvikclient/clientcurlsession.h"

#include <atomic>

namespace quillon {

class File;

/// The client's HTTPS session together with the address of the gateway, and the only way in which downloaded
/// content reaches the disk. Owned by the client; its operations may be called on any thread.
class DownloadManager {
public:
    /// A file that the client may fetch: "filename" and "urlpath" are required, "md5" is optional.
    struct DownloadConfig : IConf {
        using IConf::write;
        void write(IKeyReader& reader) override;

        String filename; ///< the local name and the last component of the URL
        String md5;      ///< lower-case hexadecimal; empty matches no file
        String urlpath;  ///< prefix of the URL, absolute or a path on the gateway; ends in "/"
    };

    /// What modules get as their download delegate.
    struct StaticDownloadWrapper {
        /// Null until a session has begun.
        static std::atomic<DownloadManager*> m_downloadManager;

        /// Fetches `url` into the file `path`, both C strings that the module owns. Any thread; no exception
        /// leaves it. The manager outlives the call.
        static bool downloadFileTo(char* url, char* path);
    };

    explicit DownloadManager(ClientLocalConfiguration const& settings) : m_session(settings) {}
    /// Cuts off what modules' threads still fetch and waits until they have left, about a second.
    ~DownloadManager();

    TarvikClientCurlSession& getSession() noexcept { return m_session; }
    TarvikClientCurlSession const& getSession() const noexcept { return m_session; }
    /// Host, and port if there is one, to which URLs without a scheme go.
    void setServer(String const& authority);

    /// No download is longer unless less is said, in bytes.
    static constexpr unsigned long maxSize = 512UL * 1024 * 1024;

    /// Fetches `url` into the file `path`, making the directories that it needs. A file that is there is
    /// replaced and not written to: somebody may have it mapped. True only for a complete transfer with
    /// status 200 of at most `limit` bytes; every failure is logged and leaves an empty file.
    bool downloadFileTo(String const& url, String const& path, unsigned long limit = maxSize) noexcept;

    /// Sees to it that `directory` holds the configured file, fetching it unless it is there with the
    /// configured MD5. Returns its path, or the null string when that failed; a name that would leave the
    /// directory is such a failure and touches nothing. Throws EFile when a file that is there cannot be
    /// read.
    String downloadFromConfig(DownloadConfig const& config, String const& directory,
                              unsigned long limit = maxSize);
    /// Whether the file `path` is the configured one, by its MD5. Throws EFile when it cannot be read.
    static bool isPresent(DownloadConfig const& config, String const& path);

    /// Lower-case hexadecimal; throws EFile when the file cannot be read.
    static String computeFileMd5(String const& path);

private:
    String urlOf(String const& url) const;
    bool transfer(String const& url, String const& path, unsigned long limit);
    bool fill(File& file, String const& url);

    TarvikClientCurlSession m_session;
    mutable Mutex m_serverMutex;
    String m_server;
};

/// Whether a name from the configuration may become a path below a directory; logs, as `cls` and `method`,
/// one that would lead out of it or that is one of the client's own there.
bool staysInDirectory(String const& name, char const* cls, char const* method);

/// Removes a file that an installation is about to replace, if there is one. Throws EFile after a log line.
void REMOVE(String const& path);

/// Moves into place a file that an archive should have held. Throws EFile after a log line.
void RENAME(String const& from, String const& to);

} // namespace quillon
