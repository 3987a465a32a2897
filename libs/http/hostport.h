// The host and port that a URL leads to, in the one form that can be compared.
#pragma once

#include "base/string.h"

#include <optional>

namespace quillon::http {

/// A host name or address and a port. Two texts that lead to the same place by the rules of names alone give
/// equal values; nothing is looked up. A value.
///
///     HostPort::parse("Gate.Example.", 443)->toString(443); // "gate.example"
class HostPort {
public:
    /// Takes "host" or "host:port" apart; without a port it is `defaultPort`. Names may be international, in
    /// UTF-8. Nothing where a URL library could see another host than the reader does: user info,
    /// percent-encoding, backslashes, blanks and control characters, empty labels, an empty port, numbers
    /// that only some libraries take for an address ("127.1", "0x7f000001"), IPv6 zones.
    static std::optional<HostPort> parse(String const& text, unsigned short defaultPort);

    /// In lower case and ASCII (an international name as libcurl sends it, RFC 3490), without a dot at the
    /// end; an IPv6 address in brackets.
    String const& host() const noexcept { return m_host; }
    unsigned short port() const noexcept { return m_port; }
    bool isAddress() const noexcept { return m_isAddress; }
    /// "host:port", or "host" where the port is the default one.
    String toString(unsigned short defaultPort) const;
    /// An international name as its owner writes it, in UTF-8; empty for a name that has no such form, and
    /// for one that could be taken for another: with Latin and other letters in one label, or written from
    /// the right.
    String internationalName() const;

    bool operator==(HostPort const&) const = default;

private:
    HostPort(String const& host, unsigned short port, bool isAddress)
        : m_host(host), m_port(port), m_isAddress(isAddress) {}

    String m_host;
    unsigned short m_port;
    bool m_isAddress;
};

} // namespace quillon::http
