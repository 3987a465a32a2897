// The user's own settings.
#pragma once

#include "base/confhelper.h"
#include "base/credentials.h"
#include "base/mutex.h"
#include "base/serializearray.h"

#include <atomic>

namespace quillon {

/// Credentials as the settings file holds them: "login" and "password" are required, "domain" is optional.
/// The password is kept and written as the user typed it.
class ProtectedCredentials : public IConf {
public:
    ProtectedCredentials() = default;
    ProtectedCredentials(Credentials const& credentials) : m_credentials(credentials) {}
    operator Credentials const&() const noexcept { return m_credentials; }

    using IConf::read;
    using IConf::write;
    void write(IKeyReader& reader) override;
    void read(IKeyWriter& writer) const override;

private:
    Credentials m_credentials;
};

/// The hosts whose certificates are not verified, and the credentials for a proxy. Every operation may be
/// called on any thread: the interface changes settings while the client thread makes requests.
class ClientLocalConfiguration : public ISerialize {
public:
    ClientLocalConfiguration() = default;

    /// Reads the settings file. One that cannot be parsed is logged and leaves the settings as they are;
    /// throws EConfMissingKey for credentials without login or password.
    void readFromFile(String const& path);
    /// Whether the file that was read last could not be read, and has not been replaced since.
    bool isFileUnreadable() const noexcept { return m_unreadable; }
    /// Of a file that could not be read, when another one takes its place.
    static constexpr char brokenSuffix[] = ".broken";
    /// Keeps a file that could not be read beside the new one, as brokenSuffix says, in the place of an
    /// earlier one of that name. Replaces the file in one step, as File::replaceAllFile() does it: a crash
    /// meanwhile leaves the old one. Throws EFile, after a log line, when it cannot be written; the old file
    /// then stays as it was.
    void save(String const& path);
    /// Whether readFromFile() would find in a saved file the settings as they are. Values are saved verbatim,
    /// so that one which holds markup ("<", "&amp;") would come back changed or make the file unreadable.
    bool survivesSaving() const;

    /// Authorities, "host" or "host:port", for which certificate verification is skipped.
    List<String> getSslCertIgnoreDomains() const;
    void setSslCertIgnoreDomains(List<String> const& domains);
    bool isSslCertIgnored(String const& authority) const;
    Credentials getProxyCredentials() const;
    void setProxyCredentials(Credentials const& credentials);

    void write(IReader& reader) override;
    void write(IKeyReader& reader) override;
    void read(IWriter& writer) const override;
    void read(IKeyWriter& writer) const override;

private:
    String toXml() const;
    bool equals(ClientLocalConfiguration const& other) const;

    std::atomic<bool> m_unreadable{false};
    mutable Mutex m_mutex;
    List<String> m_ignoredDomains{"domains"};
    ProtectedCredentials m_proxyCredentials;
};

} // namespace quillon
