#include "base/base64.h"
#include "base/safepath.h"
#include "base/string.h"
#include "base/stringconversion.h"

#include <gtest/gtest.h>

#include <climits>

using namespace quillon;

TEST(Conversion, text_to_numbers) {
    static constexpr struct {
        char const* text;
        std::uint32_t u32;
        std::uint16_t u16;
        std::uint64_t u64;
        std::int32_t i32;
    } cases[] = {
        {"12abc", 12, 12, 12, 12},
        {"", 0, 0, 0, 0},
        {"+7", 7, 7, 7, 7},
        {"-1", 4294967295u, 65535, ~0ull, -1},
        {" 42", 0, 0, 0, 42},
        {"--1", 0, 0, 0, 0},
        {"4294967297", 1, 1, 4294967297ull, 1},
        {"65536", 65536, 0, 65536, 65536},
    };
    for (auto const& c : cases) {
        EXPECT_EQ(toUint32(c.text), c.u32) << c.text;
        EXPECT_EQ(toUint16(c.text), c.u16) << c.text;
        EXPECT_EQ(toUint64(c.text), c.u64) << c.text;
        EXPECT_EQ(toInt32(c.text), c.i32) << c.text;
    }
    EXPECT_EQ(toLong("-9223372036854775808"), LONG_MIN);
    EXPECT_EQ(toUint32(String("1234").range(1, 2)), 23u);
    EXPECT_EQ(toInt32(String("1234").range(1, 2)), 23);
    EXPECT_EQ(hexToUint32("BeEfg"), 0xBEEFu);
    EXPECT_EQ(smartIntConversion("0123", 4, -1), 123);
    EXPECT_EQ(smartIntConversion("12x", 3, -1), -1);
    EXPECT_EQ(smartIntConversion("-1", 2, 9), 9);
    EXPECT_EQ(smartIntConversion("", 0, 9), 9);
}

TEST(Conversion, utf16) {
    unsigned short const text[] = {'a', 0xE9, 0x20AC, 0xD83D, 0xDE00, 0xDE00, 0xD83D, '<', 0};
    EXPECT_EQ(toString(text), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xEF\xBF\xBD\xEF\xBF\xBD<");
    EXPECT_EQ(utf16tohtml(text, 5), "a&#233;&#8364;&#128512;");
    EXPECT_EQ(utf16tohtml(text + 7, 1), "&#60;");
    EXPECT_EQ(utf16toutf8(text + 3, 1), "\xEF\xBF\xBD") << "a pair cut in two";
    EXPECT_EQ(wildcard2regex("a*.b?[c]"), "^a.*\\.b.\\[c\\]$");
}

TEST(Base64, known_texts) {
    static constexpr char const* cases[][2] = {{"", ""},        {"a", "YQ=="},        {"ab", "YWI="},
                                               {"abc", "YWJj"}, {"abcd", "YWJjZA=="}, {"\xFB\xFF", "+/8="}};
    for (auto const& [text, encoded] : cases) {
        EXPECT_EQ(Base64::encode(text), encoded);
        EXPECT_EQ(String(text).mimencode(), encoded);
        EXPECT_EQ(Base64::decode(encoded), Memory(String(text)));
        EXPECT_EQ(Base64::sizeEncode(static_cast<unsigned>(std::strlen(text))), std::strlen(encoded));
    }
}

TEST(Base64, decoding_is_lenient_and_bounded) {
    struct {
        char const* encoded;
        String decoded;
    } const cases[] = {
        {"YW\r\nJj\tZA =\n=", "abcd"}, {"YQ==YQ==", "a"}, {"YQ=", ""},    {"YWJjY", "abc"},
        {"YWJ=garbage", "ab"},         {"    ", ""},      {"====", '\0'}, {"!!!!", String("\0\0\0", 3)},
    };
    for (auto const& c : cases)
        EXPECT_EQ(Base64::decode(c.encoded), Memory(c.decoded)) << c.encoded;
}

TEST(SafePath, stays_below_its_directory) {
    for (char const* name : {"", "a", "a/b", "a..b", "..a", "a..", ".", "./a", "a//b", "...", "a\\b", "c:/x"})
        EXPECT_TRUE(isSafeRelativePath(name)) << name;
    for (char const* name :
         {"..", "../a", "a/..", "a/../b", "/a", "\\a", "..\\a", "a\\..\\b", "a/..\\b", "/"})
        EXPECT_FALSE(isSafeRelativePath(name)) << name;
    EXPECT_FALSE(isSafeRelativePath(String("a\0b", 3)));
}
