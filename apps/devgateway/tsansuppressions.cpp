// What ThreadSanitizer should not report; linked into thread-sanitized builds alone.
//
// The system's HTTP library is built without the sanitizer, which therefore does not see the guard of the
// library's own function-local constants (its table of methods, for one) and takes their first use on two
// threads for a race. Only what the library itself does with memory is left out: what happens in the handlers
// that it calls, and every lock, its own too, is still checked.

// The sanitizer's name. NOLINTNEXTLINE(clang-diagnostic-reserved-identifier)
extern "C" char const* __tsan_default_suppressions() {
    return "called_from_lib:libcpp-httplib.so\n";
}
