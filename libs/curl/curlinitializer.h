// The process-wide part of libcurl.
#pragma once

#include <memory>

namespace quillon {

/// Sets libcurl up and takes it down again, once in a process. Every handle holds a share of the one
/// instance, so that libcurl is not taken down at the process's end under sessions that still live.
///
/// Handles tell libcurl to leave signals alone, because its handling of them is not safe with threads; then
/// nothing keeps a write to a connection that the peer has closed from ending the process with SIGPIPE. The
/// constructor therefore ignores that signal, unless the program has already decided what becomes of it.
class CurlInitializer {
public:
    CurlInitializer();
    ~CurlInitializer();
    CurlInitializer(CurlInitializer const&) = delete;
    CurlInitializer& operator=(CurlInitializer const&) = delete;

    /// The one instance, made at the first call. Any thread.
    static std::shared_ptr<CurlInitializer> instance();
};

} // namespace quillon
