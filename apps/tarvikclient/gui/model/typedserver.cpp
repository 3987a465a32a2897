#include "tarvikclient/gui/model/typedserver.h"

#include "http/uri.h"
#include "tarvikclient/gui/model/wxconversion.h"
#include "tarvikclient/policyrules.h"

#include <algorithm>

namespace quillon {

namespace {

/// No URL's beginning up to its path, and no name, is longer; what is pasted may be of any length.
constexpr std::size_t mostLooked = 4096;

String authorityOf(wxString const& typed) {
    wxString const start = typed.Strip(wxString::both).Left(mostLooked);
    if (start.Contains("://"))
        return http::Uri::parse(wxToUtf8(start.BeforeFirst('#').BeforeFirst('?')), false)
            .getAuthority()
            .rright('@');
    return wxToUtf8(start.substr(0, start.find_first_of("/?#")));
}

std::optional<http::HostPort> parse(String const& authority) {
    bool const isBareIpv6 = std::count(authority.begin(), authority.end(), ':') > 1 && authority[0] != '[';
    return http::HostPort::parse(isBareIpv6 ? "[" + authority + "]" : authority, gatewayPort);
}

} // namespace

wxString serverNamedBy(wxString const& typed, wxString const& gateway) {
    auto const server = parse(authorityOf(typed));
    if (!server)
        return {};
    bool const isGateway = server == parse(wxToUtf8(gateway));
    return isGateway ? gateway : quillonToWxString(server->toString(gatewayPort));
}

} // namespace quillon
