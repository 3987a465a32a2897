// The gateways that a user has agreed to.
#pragma once

#include "http/hostport.h"

#include <vector>

namespace quillon {

/// Kept in "gateways.xml" in the user's data directory, mode 0600, which is replaced in one step. A file that
/// is damaged, a link, or not the user's alone counts as none. Any thread.
class RememberedGateways {
public:
    /// Of the user's data directory.
    RememberedGateways();
    explicit RememberedGateways(String const& path) : m_path(path) {}

    bool contains(http::HostPort const& gateway) const;
    /// Remembers the last hundred. A failure is logged: the user is asked again then.
    void add(http::HostPort const& gateway) const;

private:
    std::vector<http::HostPort> load() const;

    String m_path;
};

} // namespace quillon
