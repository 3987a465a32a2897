// What a signal handler may look at, at any moment.
#pragma once

#include "base/descriptor.h"
#include "base/string.h"

#include <atomic>

namespace quillon {

/// A copy of the text that lives as long as the process; one for each text, however often it is asked for.
/// Any thread; not for signal handlers.
char const* keptForSignals(String const& text);

/// A file that a signal handler writes to. Its descriptor, once there, is never closed: it stands for another
/// file when one is set, so that whoever has just read the number cannot write to a stranger's file. For
/// objects of static storage.
class SignalDescriptor {
public:
    constexpr SignalDescriptor() = default;

    /// One thread at a time. What cannot be done leaves the file that was there.
    void set(Descriptor file) noexcept;
    /// Negative before there is one. Any thread; safe in a signal handler.
    int number() const noexcept { return m_number; }

private:
    std::atomic<int> m_number{-1};
};

} // namespace quillon
