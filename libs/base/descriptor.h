// Ownership of a file descriptor.
#pragma once

#include <unistd.h>

#include <utility>

namespace quillon {

/// Owns one file descriptor, or none, and closes it. A value that moves; one thread at a time.
class Descriptor {
public:
    /// Negative, what the system answers on failure, is none.
    explicit Descriptor(int number = -1) noexcept : m_number(number) {}
    Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor() {
        if (m_number >= 0)
            ::close(m_number);
    }

    int number() const noexcept { return m_number; }
    explicit operator bool() const noexcept { return m_number >= 0; }
    /// Gives the descriptor to the caller, who closes it.
    int release() noexcept { return std::exchange(m_number, -1); }

private:
    int m_number;
};

} // namespace quillon
