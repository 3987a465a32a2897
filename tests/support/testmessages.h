// What the test server receives and what it answers.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillon::test {

/// One request as it came over the wire.
struct Request {
    std::string method;
    std::string target;
    /// Names and values in the order they came, names as they were written.
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;

    /// The value of the first header of that name, whatever its case; empty when there is none.
    std::string header(std::string_view name) const;
    bool hasHeader(std::string_view name) const;
    /// `target` without its query.
    std::string path() const { return target.substr(0, target.find('?')); }
};

/// What to send back and what becomes of the connection then.
struct Reply {
    enum Ending {
        keepAlive, ///< wait for the next request on the connection
        close,     ///< close in an orderly way
        reset,     ///< tear down with a TCP reset
        hold,      ///< stay silent until TestServer::release() or the server's end, then close
        trickle,   ///< send a byte now and then until TestServer::release() or the server's end, then close
    };

    /// The raw bytes; status line, headers and body are the handler's to form. May be empty.
    std::string bytes;
    Ending ending = keepAlive;
    /// Sent after `bytes`, so many times or until the peer has gone: answers that no test should hold in
    /// memory.
    std::string again;
    std::size_t times = 0;
    /// To wait before sending; the server's end and release() cut it short.
    std::chrono::milliseconds delay{0};
};

using HeaderLines = std::vector<std::string>;

/// A whole reply with a Content-Length. `headers` are further lines, "Name: value", without line ends.
Reply status(int code, std::string_view body = "", HeaderLines const& headers = {});
/// Code 200.
Reply ok(std::string_view body = "", HeaderLines const& headers = {});
/// Code 200 and the content type of JSON.
Reply json(std::string_view body);
/// Bytes as they stand and an ending.
Reply raw(std::string_view bytes, Reply::Ending ending = Reply::close);
/// Sends nothing.
Reply silent(Reply::Ending ending);

} // namespace quillon::test
