// A growable buffer of raw bytes.
#pragma once

#include "base/string.h"

#include <vector>

namespace quillon {

/// Owns a run of bytes that is not text: bodies, digests, signatures. A value; not shared, not synchronised.
class Memory {
public:
    Memory() = default;
    Memory(void const* bytes, std::size_t count)
        : m_bytes(static_cast<char const*>(bytes), static_cast<char const*>(bytes) + count) {}
    /// Copies the string's bytes.
    explicit Memory(String const& text) : Memory(text.array(), text.length()) {}

    char const* array() const noexcept { return m_bytes.data(); }
    char* array() noexcept { return m_bytes.data(); }
    unsigned char const* bytes() const noexcept {
        return reinterpret_cast<unsigned char const*>(m_bytes.data());
    }
    unsigned char* bytes() noexcept { return reinterpret_cast<unsigned char*>(m_bytes.data()); }
    std::size_t size() const noexcept { return m_bytes.size(); }
    bool empty() const noexcept { return m_bytes.empty(); }

    void append(void const* bytes, std::size_t count) {
        char const* const first = static_cast<char const*>(bytes);
        m_bytes.insert(m_bytes.end(), first, first + count);
    }
    /// Makes room for `count` bytes in all without changing the size.
    void reserve(std::size_t count) { m_bytes.reserve(count); }
    /// Changes the size; new bytes are 0.
    void resize(std::size_t count) { m_bytes.resize(count); }
    void clear() noexcept { m_bytes.clear(); }

    bool operator==(Memory const&) const = default;

    /// Two lower-case hexadecimal digits for each byte.
    String toHex() const;

private:
    std::vector<char> m_bytes;
};

} // namespace quillon
