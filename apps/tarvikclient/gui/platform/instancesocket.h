// How a process brings a URL to the running client.
#pragma once

#include "base/deadline.h"
#include "base/string.h"
#include "tarvikclient/gui/platform/instanceplace.h"

#include <string_view>

namespace quillon::instance {

/// A packet is this and the URL; anything else is not from a process of this program. The receiver answers
/// with one byte once the URL is in its hands.
constexpr std::string_view greeting = "tarvikclient URL 1\n";

enum class Handover {
    done,
    foreign, ///< the socket is another user's or cannot be asked; nothing was sent
    absent,  ///< nobody listens: the process has just begun, or just ended
    broken,  ///< it ended the connection without an answer
    silent   ///< it did not answer in time
};

/// Hands the URL to the process that has the place; an empty one is not sent.
Handover handOver(Place const& place, String const& url, Deadline const& deadline);

/// Whether the process at the other end is this user's.
bool isOwnUser(Descriptor const& connection);

} // namespace quillon::instance
