// Long texts for tests.
#pragma once

#include <string>
#include <string_view>

namespace quillon::test {

inline std::string repeated(std::string_view piece, unsigned count) {
    std::string text;
    text.reserve(piece.size() * count);
    while (count-- > 0)
        text += piece;
    return text;
}

} // namespace quillon::test
