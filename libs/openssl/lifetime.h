// How long OpenSSL lives.
#pragma once

namespace quillon::tls {

/// Keeps OpenSSL from taking itself down at exit: its handler runs before the toolkit's wait for threads, and
/// pulls what they compute with from under them. The library that uses OpenSSL first decides; programs that
/// link this one have decided before main(). Any thread.
void keepUntilTheEnd() noexcept;

} // namespace quillon::tls
