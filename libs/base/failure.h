// The one way to fail: a line in the log, then an exception that names its class and the place.
#pragma once

#include "base/exception.h"
#include "base/log.h"

#include <source_location>
#include <typeinfo>

namespace quillon {

/// Where an exception says that it was thrown: the call, or a place that support matches on and that stays
/// the same whatever the source looks like.
struct Place {
    constexpr Place(std::source_location const& call) noexcept
        : file(call.file_name()), line(static_cast<int>(call.line())) {}
    constexpr Place(char const* path, int number) noexcept : file(path), line(number) {}

    char const* file; // static storage
    int line;
};

/// A class's name without its namespaces, as exceptions carry it.
String nameOf(std::type_info const& type);

/// Throws an E that is named for its class. For failures that are logged elsewhere, or not at all.
template <std::derived_from<Exception> E>
[[noreturn]] void failQuietly(Place place = std::source_location::current(), int code = 0) {
    throw E(code, nameOf(typeid(E)), place.file, place.line);
}

/// Logs `text` at category ERROR and throws an E. Any thread.
template <std::derived_from<Exception> E>
[[noreturn]] void fail(String const& cls, String const& method, String const& text,
                       Place place = std::source_location::current(), int code = 0) {
    log(ERROR, cls, method, text);
    failQuietly<E>(place, code);
}

/// Logs at category TRACE that an exception goes no further than the call.
void traceCaught(std::exception const& e, Place place = std::source_location::current()) noexcept;

} // namespace quillon
