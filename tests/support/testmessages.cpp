#include "support/testmessages.h"

#include "base/ascii.h"

#include <algorithm>

namespace quillon::test {

namespace {

bool sameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return ascii::lower(x) == ascii::lower(y); });
}

auto findHeader(Request const& request, std::string_view name) {
    return std::find_if(request.headers.begin(), request.headers.end(),
                        [&](auto const& header) { return sameName(header.first, name); });
}

} // namespace

std::string Request::header(std::string_view name) const {
    auto const found = findHeader(*this, name);
    return found == headers.end() ? std::string() : found->second;
}

bool Request::hasHeader(std::string_view name) const {
    return findHeader(*this, name) != headers.end();
}

Reply status(int code, std::string_view body, HeaderLines const& headers) {
    Reply reply;
    reply.bytes = "HTTP/1.1 " + std::to_string(code) + " Test\r\n";
    for (std::string const& line : headers)
        reply.bytes += line + "\r\n";
    reply.bytes += "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    reply.bytes += body;
    return reply;
}

Reply ok(std::string_view body, HeaderLines const& headers) {
    return status(200, body, headers);
}

Reply json(std::string_view body) {
    return ok(body, {"Content-Type: application/json"});
}

Reply raw(std::string_view bytes, Reply::Ending ending) {
    Reply reply;
    reply.bytes = bytes;
    reply.ending = ending;
    return reply;
}

Reply silent(Reply::Ending ending) {
    return raw("", ending);
}

} // namespace quillon::test
