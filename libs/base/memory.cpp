#include "base/memory.h"

namespace quillon {

String Memory::toHex() const {
    static constexpr char digits[] = "0123456789abcdef";
    String hex;
    hex.reserve(static_cast<unsigned>(m_bytes.size() * 2));
    for (char const byte : m_bytes) {
        auto const value = static_cast<unsigned char>(byte);
        hex.append(digits[value >> 4]);
        hex.append(digits[value & 0xF]);
    }
    return hex;
}

} // namespace quillon
