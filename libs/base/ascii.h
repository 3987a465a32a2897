// Characters as the C locale sees them, whatever locale the process runs in.
#pragma once

namespace quillon::ascii {

constexpr char lower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}
constexpr char upper(char c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}
constexpr bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}
constexpr bool isAlnum(char c) noexcept {
    return isDigit(c) || (lower(c) >= 'a' && lower(c) <= 'z');
}

/// What trim() takes away: blank, CR, LF, tab and NUL.
constexpr bool isWhite(char c) noexcept {
    return c == ' ' || c == '\r' || c == '\n' || c == '\t' || c == '\0';
}

/// The value of a hexadecimal digit of either case, or -1.
constexpr int hexValue(char c) noexcept {
    if (isDigit(c))
        return c - '0';
    char const l = lower(c);
    return l >= 'a' && l <= 'f' ? l - 'a' + 10 : -1;
}

} // namespace quillon::ascii
