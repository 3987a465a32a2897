// What ThreadSanitizer is told about libraries that are not built with it; other builds never call this.

// OpenSSL counts the references to a TLS session with atomic operations that the sanitizer does not see, so
// that the release of a session on one thread looks like a race with its use, before that, on another.
extern "C" char const* __tsan_default_suppressions();
extern "C" char const* __tsan_default_suppressions() {
    return "race:libcrypto.so\nrace:libssl.so\n";
}
