// The policy in force, for an administrator to read.
#pragma once

#include "tarvikclient/policy.h"

namespace quillon::cli {

/// The policy and the publisher's keys in lines.
String describe(Policy const& policy, char const* path);

/// Prints the policy on standard output; one that allows no session is named with its reason on standard
/// error. Returns the program's exit code: 0, or 1 for such a policy. Called before there is a client.
int showPolicy();

} // namespace quillon::cli
