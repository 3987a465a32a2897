// The portal page and the launch URLs on it.
#pragma once

#include <string>
#include <vector>

namespace devgateway {

struct LaunchUrl {
    std::string kind; // last component of the mediation path
    std::string url;
    std::string explanation; // one sentence for the portal page
};

/// One launch URL per kind of configuration. "authority" is HOST or HOST:PORT.
std::vector<LaunchUrl> launchUrls(std::string const& authority);

/// The portal page, HTML.
std::string portalPage(std::string const& authority);

} // namespace devgateway
