// Keeps this library's failures out of OpenSSL's error queue.
#pragma once

#include "openssl/lifetime.h"

#include <openssl/err.h>

namespace quillon::tls {

/// Takes away, at the end of a scope, the errors that were put on the calling thread's queue within it.
/// Errors left there would be taken for those of the thread's next TLS connection.
class ErrorQueueGuard {
public:
    ErrorQueueGuard() {
        keepUntilTheEnd();
        ERR_set_mark();
    }
    ~ErrorQueueGuard() { ERR_pop_to_mark(); }
    ErrorQueueGuard(ErrorQueueGuard const&) = delete;
    ErrorQueueGuard& operator=(ErrorQueueGuard const&) = delete;
};

} // namespace quillon::tls
