#include "tarvikclient/gui/model/wxconversion.h"

#include <gtest/gtest.h>

#include <clocale>

namespace quillon {

namespace {

TEST(Conversion, takes_text_through_the_encoding_and_back_or_gives_nothing_rather_than_half) {
    EXPECT_EQ(wxToQuillonString("plain").view(), "plain");
    EXPECT_TRUE(wxToQuillonString(wxString::FromUTF8("gr\xC3\xBC\xC3\x9F")).empty())
        << "not expressible in ASCII";
    ASSERT_TRUE(std::setlocale(LC_CTYPE, "C.UTF-8"));
    for (char const* const text : {"", "tarvik://u@gw/?lang=de", "\xC3\xBC \xE2\x82\xAC", "\xF0\x9F\x98\x80"})
        EXPECT_EQ(wxToQuillonString(quillonToWxString(text)).view(), text);
    std::setlocale(LC_CTYPE, "C");
}

TEST(Conversion, shows_bytes_that_are_no_utf8_and_reads_no_further_than_the_string) {
    EXPECT_EQ(quillonToWxString("caf\xE9"), wxString::FromUTF8("caf\xC3\xA9"));
    EXPECT_EQ(quillonToWxString("\xC3"), wxString::FromUTF8("\xC3\x83")); // cut in the middle of a character
    EXPECT_EQ(quillonToWxString(String("connected", 7)), "connect");
    EXPECT_EQ(quillonToWxString(String("a\0b", 3)).length(), 3u);
}

} // namespace

} // namespace quillon
