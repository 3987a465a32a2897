#include "base/proxy.h"

#include "base/confhelper.h"

#include <algorithm>
#include <iterator>

namespace quillon {

String Proxy::computeType() const {
    switch (m_type) {
    case SOCKS4:
        return "socks4";
    case SOCKS5:
        return "socks5";
    case HTTP_CONNECT:
        return "https";
    case NO_PROXY:
        return "none";
    }
    return String();
}

void Proxy::computeType(String const& name) {
    // "sock5" is what deployed configurations say; "socks5" has never been accepted.
    static constexpr struct {
        char const* name;
        Type type;
    } names[] = {{"no-proxy", NO_PROXY},  {"no", NO_PROXY},      {"none", NO_PROXY},
                 {"socks4", SOCKS4},      {"sock5", SOCKS5},     {"connect", HTTP_CONNECT},
                 {"https", HTTP_CONNECT}, {"http", HTTP_CONNECT}};
    auto const found = std::find_if(std::begin(names), std::end(names),
                                    [&](auto const& known) { return name == known.name; });
    if (found != std::end(names))
        m_type = found->type;
}

String Proxy::getTypeString() const {
    String const type = computeType();
    return type.empty() || m_type == NO_PROXY ? String("no") : type;
}

bool Proxy::operator==(Proxy const& other) const noexcept {
    return m_credentials == other.m_credentials && m_type == other.m_type && m_host == other.m_host;
}

void Proxy::write(IReader& reader) {
    String type;
    reader.read(type);
    computeType(type);
    reader.read(m_host);
    reader.read(static_cast<ISerialize&>(m_credentials));
}

void Proxy::write(IKeyReader& reader) {
    String type;
    if (ConfReadHelper::readKey(reader, "type", type, ConfReadHelper::optional))
        computeType(type);
    ConfReadHelper::readKey(reader, "address", m_host, ConfReadHelper::optional);
    ConfReadHelper::readKey(reader, "credentials", m_credentials, ConfReadHelper::optional);
}

void Proxy::read(IWriter& writer) const {
    writer.write(computeType());
    writer.write(m_host);
    writer.write(static_cast<ISerialize const&>(m_credentials));
}

void Proxy::read(IKeyWriter& writer) const {
    writer["type"].write(computeType());
    writer["address"].write(m_host);
    writer["credential"].write(static_cast<ISerialize const&>(m_credentials));
}

} // namespace quillon
