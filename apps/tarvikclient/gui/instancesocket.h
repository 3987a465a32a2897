// The socket whose name is the place of the running client.
#pragma once

#include "base/descriptor.h"
#include "base/string.h"

#include <chrono>
#include <string_view>

namespace quillon::instance {

/// A packet is this and the URL; anything else is not from a process of this program. The receiver answers
/// with one byte once the URL is in its hands.
constexpr std::string_view greeting = "tarvikclient URL 1\n";

using Deadline = std::chrono::steady_clock::time_point;

/// A listening socket, if the place was free. Otherwise none, and `occupied` says whether another process has
/// the place or sockets cannot be had, which has been logged.
Descriptor takePlace(bool& occupied);

enum class Handover {
    done,
    foreign, ///< the place belongs to another user; nothing was sent
    absent,  ///< nobody listens: the process has just begun, or just ended
    broken,  ///< it ended the connection without an answer
    silent   ///< it did not answer in time
};

/// Hands the URL to the process that has the place; an empty one is not sent.
Handover handOver(String const& url, Deadline deadline);

/// Whether the process at the other end is this user's.
bool isOwnUser(Descriptor const& connection);

} // namespace quillon::instance
