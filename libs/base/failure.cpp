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

void traceCaught(std::exception const& e, Place place) noexcept {
    auto const* const own = dynamic_cast<Exception const*>(&e);
    log(TRACE, "Exception", "catch", own ? own->trace(place.file, place.line) : String::copyOf(e.what()));
}

} // namespace quillon
