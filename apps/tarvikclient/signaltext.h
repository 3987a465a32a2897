// Text for signal handlers.
#pragma once

#include <cstddef>

namespace quillon {

/// Puts a short text together in a buffer of its own, without memory, locks or locales; what does not fit is
/// cut off. Safe in a signal handler.
class SignalText {
public:
    SignalText& add(char const* text) noexcept;
    /// In decimal, with zeros before it up to so many digits.
    SignalText& addNumber(unsigned long number, unsigned digits = 1) noexcept;
    /// The calling thread as the log names one that has no name.
    SignalText& addThread() noexcept;
    /// The time as the log's lines have it, in the zone that rememberTimeZone() has found.
    SignalText& addLogTime() noexcept;

    char const* bytes() const noexcept { return m_bytes; }
    std::size_t length() const noexcept { return m_length; }
    /// Writes the text; what the system does not take is lost.
    void writeTo(int descriptor) const noexcept;

    /// Notes how far the local time is from UTC at this moment. Any thread; not for signal handlers.
    static void rememberTimeZone() noexcept;

private:
    void addCharacter(char character) noexcept;
    void addDigits(unsigned long number, unsigned base, unsigned digits) noexcept;

    char m_bytes[768];
    std::size_t m_length = 0;
};

} // namespace quillon
