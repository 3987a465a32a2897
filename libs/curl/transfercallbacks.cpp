#include "curl/transfercallbacks.h"

#include "base/ascii.h"
#include "base/log.h"
#include "curl/longhead.h"

namespace quillon {

namespace {

// C code calls: whatever is thrown becomes "took nothing".
template <class Take>
std::size_t guarded(std::size_t length, Take take) noexcept {
    try {
        return take() ? length : 0;
    } catch (...) {
        return 0;
    }
}

bool refuse(char const* why) {
    log(ERROR, "CurlEasyWrapper", "readHeaderLine", why);
    return false;
}

// "HTTP/1.1 103 Early Hints": another header follows, and no second request before it.
bool isInterim(http::ResponseHeader const& header) {
    return header.getStatusLine().right(' ', true).starts("1");
}

bool announcesCoding(String const& line) {
    String const value = line.right(':', true).trim();
    return line.left(':').trim().equalsNoCase2("Transfer-Encoding") && !value.equalsNoCase2("chunked") &&
           !value.equalsNoCase2("identity");
}

void readLine(String const& line, HeaderTarget& target) {
    bool const begins = line.starts("HTTP/");
    if (begins)
        target.header = http::ResponseHeader(line);
    else
        target.header.addLine(line);
    if (!target.longHead)
        return;
    if (begins)
        target.longHead->replyBegins();
    else if (line.trim().empty() && !isInterim(target.header))
        target.longHead->replyEnds();
}

} // namespace

std::size_t writeToMemory(char* bytes, std::size_t size, std::size_t count, void* target) noexcept {
    std::size_t const length = size * count;
    return guarded(length, [&] {
        auto& [memory, limit] = *static_cast<MemoryTarget*>(target);
        if (memory.size() > limit || length > limit - memory.size()) {
            log(ERROR, "CurlEasyWrapper", "writeToMemory", "the body is too long");
            return false;
        }
        memory.append(bytes, length);
        return true;
    });
}

std::size_t writeToWriter(char* bytes, std::size_t size, std::size_t count, void* target) noexcept {
    std::size_t const length = size * count;
    return guarded(length, [&] {
        static_cast<IWriter*>(target)->write(bytes, static_cast<unsigned>(length));
        return true;
    });
}

std::size_t readHeaderLine(char* bytes, std::size_t size, std::size_t count, void* target) noexcept {
    std::size_t const length = size * count;
    return guarded(length, [&] {
        auto& headers = *static_cast<HeaderTarget*>(target);
        String const line = String::copyOf({bytes, length});
        if (length > headers.left)
            return refuse("the headers are too long");
        if (announcesCoding(line))
            return refuse("unknown transfer coding");
        headers.left -= length;
        readLine(line, headers);
        return true;
    });
}

} // namespace quillon
