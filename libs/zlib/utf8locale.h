// Makes a thread see names as UTF-8.
#pragma once

#include <locale>

namespace quillon::zlib {

/// Gives the calling thread a locale whose characters are UTF-8 for the length of a scope. libarchive hands
/// out no name beyond ASCII in the "C" locale, which is the one of a program that has not asked for another.
class Utf8Locale {
public:
    Utf8Locale();
    ~Utf8Locale();
    Utf8Locale(Utf8Locale const&) = delete;
    Utf8Locale& operator=(Utf8Locale const&) = delete;

private:
    locale_t m_mine = nullptr;
    locale_t m_before = nullptr;
};

} // namespace quillon::zlib
