// The faults that the gateway commits when it is told to, so that a client can be tried against them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace devgateway {

enum class FaultKind {
    Reset,        // the connection is closed without a reply
    Truncate,     // the reply announces more bytes than it has
    BadSignature, // the served module signature has one wrong character
    Status        // the reply has another status
};

struct Fault {
    FaultKind kind;
    int status = 0;         // of FaultKind::Status, 200 to 599
    std::string pathPrefix; // empty: every path
};

/// Reads "NAME[:PATH-PREFIX]", NAME one of reset, truncate, bad-signature and status=CODE.
/// Nothing when the text is none of these.
std::optional<Fault> parseFault(std::string_view text);

/// The first fault of that kind that applies to the path; null when none does. Points into the list.
Fault const* findFault(std::vector<Fault> const& faults, FaultKind kind, std::string_view path);

} // namespace devgateway
