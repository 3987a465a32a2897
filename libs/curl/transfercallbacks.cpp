#include "curl/transfercallbacks.h"

#include "base/log.h"

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
        auto& header = *static_cast<http::ResponseHeader*>(target);
        String const line = String::copyOf({bytes, length});
        if (line.starts("HTTP/"))
            header = http::ResponseHeader(line);
        else
            header.addLine(line);
        return true;
    });
}

} // namespace quillon
