#include "base/failure.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

namespace quillon {

String nameOf(std::type_info const& type) {
    int status = 0;
    std::unique_ptr<char, void (*)(void*)> const readable(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
    return String(readable ? readable.get() : type.name()).rright(':').clone();
}

void traceCaught(Exception const& e, Place place) noexcept {
    log(TRACE, "Exception", "catch", e.trace(place.file, place.line));
}

} // namespace quillon
