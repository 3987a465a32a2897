#include "devgateway/faults.h"

#include <algorithm>
#include <charconv>

namespace devgateway {

namespace {

std::optional<int> parseStatus(std::string_view text) {
    int status = 0;
    char const* end = text.data() + text.size();
    auto const [stop, error] = std::from_chars(text.data(), end, status);
    if (error != std::errc() || stop != end || status < 200 || status > 599)
        return std::nullopt;
    return status;
}

} // namespace

std::optional<Fault> parseFault(std::string_view text) {
    auto const colon = text.find(':');
    std::string_view const name = text.substr(0, colon);
    std::string_view const prefix = colon == text.npos ? std::string_view() : text.substr(colon + 1);
    if (colon != text.npos && !prefix.starts_with('/'))
        return std::nullopt;

    if (name == "reset")
        return Fault{FaultKind::Reset, 0, std::string(prefix)};
    if (name == "truncate")
        return Fault{FaultKind::Truncate, 0, std::string(prefix)};
    if (name == "bad-signature")
        return Fault{FaultKind::BadSignature, 0, std::string(prefix)};
    constexpr std::string_view statusName = "status=";
    if (!name.starts_with(statusName))
        return std::nullopt;
    std::optional<int> const status = parseStatus(name.substr(statusName.size()));
    if (!status)
        return std::nullopt;
    return Fault{FaultKind::Status, *status, std::string(prefix)};
}

Fault const* findFault(std::vector<Fault> const& faults, FaultKind kind, std::string_view path) {
    auto const found = std::find_if(faults.begin(), faults.end(), [&](Fault const& fault) {
        return fault.kind == kind && path.starts_with(fault.pathPrefix);
    });
    return found == faults.end() ? nullptr : &*found;
}

} // namespace devgateway
