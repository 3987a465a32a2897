// A proxy: its kind, its address and the credentials for it.
#pragma once

#include "base/credentials.h"

namespace quillon {

/// A value. In documents: "type", "address" and "credentials" when read; when written the last is
/// "credential", which readers of older releases expect.
class Proxy : public ISerialize {
public:
    enum Type : int { SOCKS4 = 0, SOCKS5 = 1, HTTP_CONNECT = 2, NO_PROXY = 3 };

    Proxy() = default;
    Proxy(Type type, String const& host) : m_type(type), m_host(host) {}

    Type getType() const noexcept { return m_type; }
    void setType(Type type) noexcept { m_type = type; }
    /// Host and port, as "host:port".
    String const& getHost() const noexcept { return m_host; }
    void setHost(String const& host) { m_host = host; }
    Credentials& getCredentials() noexcept { return m_credentials; }
    Credentials const& getCredentials() const noexcept { return m_credentials; }

    /// The name in documents: "socks4", "socks5", "https" or "none"; empty for another value.
    String computeType() const;
    /// Sets the type from a name; an unknown one, "socks5" among them, leaves it as it was.
    void computeType(String const& name);
    /// The name that is shown: as in documents, but "no" for no proxy.
    String getTypeString() const;

    bool operator==(Proxy const& other) const noexcept;

    void write(IReader& reader) override;
    void write(IKeyReader& reader) override;
    void read(IWriter& writer) const override;
    void read(IKeyWriter& writer) const override;

private:
    Credentials m_credentials;
    Type m_type = NO_PROXY;
    String m_host;
};

} // namespace quillon
