#include "openssl/lifetime.h"

#include <openssl/crypto.h>

namespace quillon::tls {

void keepUntilTheEnd() noexcept {
    OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);
}

namespace {
[[maybe_unused]] bool const g_keptBeforeMain = (keepUntilTheEnd(), true);
} // namespace

} // namespace quillon::tls
