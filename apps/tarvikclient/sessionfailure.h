// Why a session ended on a fatal error.
#pragma once

#include "base/string.h"

namespace quillon {

/// What a person can be told, and do something about.
enum class FailureKind {
    none,
    badLink,      ///< the launch URL names no gateway, or one that can be read in two ways
    policy,       ///< the administrator's policy is against it, or cannot be followed
    notAgreed,    ///< the policy asks about the gateway, and nobody said yes
    gatewayError, ///< the gateway's reply is an HTTP error
    replyNotUnderstood,
    refusedByGateway,
    moduleNotFetched,  ///< or not stored here
    badSignature,      ///< the module is not the publisher's, or the policy is against it
    moduleNotLoadable, ///< or failed while it was at work
    other
};

/// A value.
struct SessionFailure {
    /// Of the gateway's own words no more is kept, in bytes.
    static constexpr unsigned longestWords = 1000;

    FailureKind kind = FailureKind::none;
    unsigned httpStatus = 0;   ///< of the gateway's reply; 0: it gave none, or the one for success
    String gatewaysWords = {}; ///< as it sent them: a stranger's text, which may be empty
};

} // namespace quillon
