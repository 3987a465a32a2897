// The administrator's policy as a file.
#pragma once

#include "base/failure.h"
#include "tarvikclient/policyplace.h"

#include <optional>

namespace quillon {

/// The policy is there and cannot be followed: no session may begin.
class EPolicy : public Exception {
    using Exception::Exception;
};

/// Logs why the policy at `path` cannot be followed, at ERROR, and throws EPolicy.
[[noreturn]] void failPolicy(String const& path, String const& reason,
                             Place place = std::source_location::current());

/// The file's content; nothing where there is none. Throws EPolicy for one that readTrustedFile() does not
/// trust. Any thread.
std::optional<String> readPolicyFile(PolicyPlace const& place);

} // namespace quillon
