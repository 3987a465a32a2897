// Reads the administrator's policy file as one must read what others would like to write.
#pragma once

#include "base/exception.h"
#include "tarvikclient/policyplace.h"

#include <optional>

namespace quillon {

/// The policy is there and cannot be followed: no session may begin.
class EPolicy : public Exception {
    using Exception::Exception;
};

/// Logs why the policy at `path` cannot be followed, at ERROR, and throws EPolicy.
[[noreturn]] void failPolicy(String const& path, String const& reason, int line);

/// The file's content; nothing where there is no file, or no directory for it. Throws EPolicy for all else
/// that is not a plain file of at most 64 KB, opened without following a link, in a directory, both of them
/// the owner's and writable by nobody else: in a directory that others write in, an absent file proves
/// nothing either. Any thread.
std::optional<String> readPolicyFile(PolicyPlace const& place);

} // namespace quillon
