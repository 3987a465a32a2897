// Log lines: one function, four categories.
#pragma once

#include "base/string.h"

namespace quillon {

/// What a line is about; also the index of the console's stream.
enum LogCategory { TRACE = 0, DEBUG = 1, ERROR = 2, ASSERT = 3 };

/// Logs one line. Any thread, at any time, static constructors and destructors included; never throws and
/// never waits for the disk. Does nothing when the console is absent.
void log(LogCategory category, String const& cls, String const& method, String const& text) noexcept;
/// The same with a tag in place of the calling thread's name.
void log(LogCategory category, String const& tag, String const& cls, String const& method,
         String const& text) noexcept;
/// Logs "number text" without a method.
void log(LogCategory category, String const& cls, int number, String const& text) noexcept;
void log(LogCategory category, String const& tag, String const& cls, int number, String const& text) noexcept;

/// A method or class of one letter is no number.
template <std::same_as<char> C>
void log(LogCategory category, String const& cls, C method, String const& text) noexcept {
    log(category, cls, String(method), text);
}
template <std::same_as<char> C>
void log(LogCategory category, String const& tag, String const& cls, C method, String const& text) noexcept {
    log(category, tag, cls, String(method), text);
}

} // namespace quillon
