// Where a program under test finds its gateway and its home.
#pragma once

#include "e2e/childprocess.h"
#include "support/temporarydirectory.h"

#include <memory>

namespace quillon::test {

/// A development gateway, and a home directory, with a blank and a quote in its name, whose settings trust
/// it.
class Site {
public:
    /// `options` are the gateway's; its module answers the lines of `script`, if there are any, one per poll.
    explicit Site(std::vector<std::string> options = {}, std::string const& script = {});

    std::string home() const { return m_directory.path() + "/it's a home"; }
    std::string settingsPath() const { return home() + "/.Tarvik/tarvikclient.xml"; }
    std::string authority() const;
    /// One of the URLs that the gateway prints.
    std::string url(std::string const& kind) const;
    /// How many requests the gateway has had for a path, as it was asked for.
    std::size_t requests(std::string const& path) const;
    /// Writes settings that trust this gateway alone.
    void trust(std::string const& authority) const;
    /// The contents of a module's log, by its path under the data directory.
    std::string moduleLog(std::string const& path) const;
    /// Waits until a program has made its client, and so has taken its signals over: the client takes the
    /// data directory for its user alone. False after half a minute.
    bool awaitClient() const;

private:
    TemporaryDirectory m_directory;
    std::unique_ptr<ChildProcess> m_gateway;
};

} // namespace quillon::test
