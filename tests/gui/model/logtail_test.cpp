#include "tarvikclient/gui/model/logtail.h"

#include "support/temporarydirectory.h"
#include "tarvikclient/gui/model/privatetext.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace quillon {

namespace {

class LogTailTest : public testing::Test {
protected:
    void append(std::string_view bytes) { std::ofstream(path, std::ios::app) << bytes; }
    void overwrite(std::string_view bytes) { std::ofstream(path, std::ios::trunc) << bytes; }
    /// What has come, with a "!" before it when that is a new beginning.
    std::string poll() {
        LogTail::News const news = tail.poll();
        return (news.restarted ? "!" : "") + news.text.utf8_string();
    }

    test::TemporaryDirectory directory;
    std::string const path = directory.path() + "/log";
    LogTail tail{path};
};

TEST_F(LogTailTest, gives_each_text_once_and_begins_anew_when_the_file_is_cut_or_replaced) {
    EXPECT_EQ(poll(), "");
    append("one\n");
    EXPECT_EQ(poll(), "!one\n");
    EXPECT_EQ(poll(), "");
    append("two, three\n");
    EXPECT_EQ(poll(), "two, three\n");
    overwrite("cut\n");
    EXPECT_EQ(poll(), "!cut\n");
    overwrite("");
    EXPECT_EQ(poll(), "!");
    append("longer than before\n");
    EXPECT_EQ(poll(), "longer than before\n");
    std::filesystem::remove(path);
    append("replaced, and by a longer text\n"); // perhaps in the same place of the disk
    EXPECT_EQ(poll(), "!replaced, and by a longer text\n");
    std::filesystem::remove(path);
    EXPECT_EQ(poll(), "");
}

TEST_F(LogTailTest, shows_nothing_of_what_others_put_in_the_logs_place) {
    append("mine\n");
    EXPECT_EQ(poll(), "!mine\n");
    std::filesystem::rename(path, path + ".old");
    std::filesystem::create_symlink(path + ".old", path);
    EXPECT_EQ(poll(), "");
    std::filesystem::remove(path);
    append("mine again\n");
    EXPECT_EQ(poll(), "!mine again\n");
    std::filesystem::remove(path);
    append("another user's\n");
    if (chown(path.c_str(), 65534, 65534) != 0)
        GTEST_SKIP() << "only the administrator can give a file to another user";
    EXPECT_EQ(poll(), "");
    EXPECT_TRUE(copyPrivately(path, directory.path() + "/copy", Person()));
    EXPECT_FALSE(std::filesystem::exists(directory.path() + "/copy"));
}

TEST_F(LogTailTest, never_waits_for_what_is_no_file) {
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(poll(), "");
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    EXPECT_EQ(poll(), "");
}

TEST_F(LogTailTest, a_character_that_is_cut_off_waits_for_its_rest) {
    std::string const text = "\xf0\x9f\x98\x80\xe2\x82\xac\xc3\xa9!";
    std::string got;
    for (char const byte : text) {
        append({&byte, 1});
        std::string const piece = poll();
        EXPECT_FALSE(piece.find("\xef\xbf\xbd") != std::string::npos);
        got += piece;
    }
    EXPECT_EQ(got, "!" + text);
    append("\xe2\x82");
    EXPECT_EQ(poll(), "");
    overwrite("new\n");
    EXPECT_EQ(poll(), "!new\n");
}

TEST_F(LogTailTest, bytes_that_are_no_text_are_replaced_and_spoil_nothing_around_them) {
    using namespace std::string_literals;
    std::string const mark = "\xef\xbf\xbd";
    std::pair<std::string, std::string> const cases[] = {
        {"a\xff-b\n", "a" + mark + "-b\n"},
        {"a\0b\n"s, "a" + mark + "b\n"},
        {"\xf0\x9f\x98\n", mark + "\n"},
        {"\xe2\xe2\x82\xac\n", mark + "\xe2\x82\xac\n"},
        {"\xc0\xaf\n", mark + mark + "\n"},                       // longer than need be
        {"\xed\xa0\x80\n", mark + mark + mark + "\n"},            // half of a pair
        {"\xf4\x90\x80\x80\n", mark + mark + mark + mark + "\n"}, // beyond the last character
    };
    overwrite("");
    poll();
    for (auto const& [bytes, text] : cases) {
        append(bytes);
        EXPECT_EQ(poll(), text) << testing::PrintToString(bytes);
    }
}

TEST_F(LogTailTest, begins_a_long_file_at_a_line_near_its_end) {
    // So many bytes of the line before are within reach; only a whole line is shown.
    for (std::size_t const within : {0, 1, 50, 99}) {
        std::string const rest = std::string(LogTail::longestBacklog - within - 1, 'x') + "\n";
        overwrite(std::string(99, 'o') + "\n" + rest);
        EXPECT_EQ(LogTail(path).poll().text, wxString(rest)) << within;
    }
    // No line begins there: the end of the one line, without a half character.
    std::string line;
    while (line.size() < LogTail::longestBacklog + 5)
        line += "\xe2\x82\xac";
    for (char const* const end : {"\n", "", "x", "xx"}) {
        overwrite(line + end);
        wxString const text = LogTail(path).poll().text;
        EXPECT_GT(text.length(), LogTail::longestBacklog / 3 - 2);
        EXPECT_EQ(text.Find(wxUniChar(0xfffd)), wxNOT_FOUND);
    }
}

TEST_F(LogTailTest, a_file_of_gigabytes_is_opened_at_once_and_read_in_pieces) {
    append("begin\n");
    std::filesystem::resize_file(path, 5'000'000'000); // sparse
    append("\nend\n");
    std::string const first = poll();
    EXPECT_EQ(first, "!end\n");
    std::size_t const more = 3 * LogTail::longestPiece;
    append(std::string(more, 'y'));
    std::size_t got = 0;
    for (int polls = 0; polls < 3; ++polls) {
        std::size_t const count = poll().size();
        EXPECT_LE(count, LogTail::longestPiece);
        got += count;
    }
    EXPECT_EQ(got, more);
}

} // namespace

} // namespace quillon
