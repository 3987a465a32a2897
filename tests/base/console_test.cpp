#include "base/console.h"

#include "base/descriptor.h"
#include "base/failure.h"
#include "base/stringconversion.h"
#include "base/visibletext.h"
#include "support/logcapture.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <regex>
#include <thread>

using namespace quillon;

namespace {

/// The line without its time.
std::string body(std::string const& line) {
    return line.substr(std::min(line.find('['), line.size()));
}

} // namespace

TEST(Exception, text_names_the_place_that_threw_and_the_place_that_caught) {
    static constexpr char const* files[][2] = {
        {"/a/b/c", "c"}, {"a\\b\\c", "c"}, {"c", "c"}, {"a\\b/c\\d", "c\\d"}};
    for (auto const& [path, file] : files) {
        EXPECT_EQ(Exception(7, "EX", path, 12).toString(), String("EX:") + file + ":12(7)");
        EXPECT_EQ(Exception("EX", path, 12).toString(), String("EX:") + file + ":12");
    }
    EXPECT_EQ(Exception(7, "EX", "/a/b/c", 12).trace("/d/e.cpp", 3), "EX:c:12(7) -> e.cpp:3");
    try {
        failQuietly<EBadItem>();
    } catch (std::exception const& e) {
        EXPECT_EQ(std::string(e.what()), "EBadItem:console_test.cpp:" + std::to_string(__LINE__ - 2));
    }
    EXPECT_EQ(Exception(-7, "EX", "c", 1).getErrorCode(), -7);
}

TEST(Console, lines_have_one_form) {
    using namespace std::chrono;
    test::LogCapture capture;
    while (duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count() % 1000 > 60)
        std::this_thread::sleep_for(milliseconds(5)); // what is written of them is not padded
    log(TRACE, "tag", "Class", "method", "text");
    log(DEBUG, "tag", "Class", "", "text");
    log(ERROR, "tag", "Class", 42, "text");
    log(ASSERT, "Class", 0, "%s%n");
    log(TRACE, "Class", 'c', "text");
    log(TRACE, "tag", "Class", 'c', "text");
    std::vector<std::string> const lines = capture.lines();
    ASSERT_EQ(lines.size(), 6u);
    for (std::string const& line : lines)
        EXPECT_TRUE(std::regex_match(
            line, std::regex(R"(\d\d-\d\d-\d\d \d\d:\d\d:\d\d\.(0|[1-9]\d{0,2}) \[.+\] [A-Z]+ Class.*)")))
            << line;
    EXPECT_EQ(body(lines[0]), "[tag] TRACE Class.method text");
    EXPECT_EQ(body(lines[1]), "[tag] DEBUG Class: text");
    EXPECT_EQ(body(lines[2]), "[tag] ERROR Class: 42 text");
    EXPECT_EQ(body(lines[3]), ("[" + Thread::getMyIdString() + "] ASSERT Class: 0 %s%n").toString().view());
    EXPECT_TRUE(lines[4].ends_with("] TRACE Class.c text")) << lines[4];
    EXPECT_EQ(body(lines[5]), "[tag] TRACE Class.c text");
}

TEST(Console, a_text_cannot_forge_a_line_nor_hide_the_rest_of_its_own) {
    test::LogCapture capture;
    log(ERROR, "tag", "Class", "", String("a\r\n[tag] TRACE b\0c\x1b[2J", 22));
    std::vector<std::string> const lines = capture.lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(body(lines[0]), "[tag] ERROR Class: a  [tag] TRACE b c\\x1b[2J");
}

TEST(Console, a_line_has_a_bound) {
    constexpr unsigned head = 19; // "[tag] TRACE Class: "
    static constexpr struct {
        unsigned filling; // before the character
        char const* character;
        std::size_t kept; // of the line
    } cases[] = {
        {Console::longestLine - head - 1, "x", Console::longestLine},
        {Console::longestLine - head, "x", Console::longestLine},
        {Console::longestLine - head - 1, "\xC3\xA9", Console::longestLine - 1},
        {Console::longestLine - head - 3, "\xF0\x9F\x98\x80", Console::longestLine - 3},
        {20000000, "x", Console::longestLine},
    };
    for (auto const& [filling, character, kept] : cases) {
        test::LogCapture capture;
        log(TRACE, "tag", "Class", "", String().append(filling, 'a').append(character));
        std::string const line = body(capture.lines().at(0));
        bool const whole = head + filling + std::strlen(character) <= Console::longestLine;
        EXPECT_EQ(line.size(), kept + (whole ? 0 : std::strlen(" [...]"))) << filling;
        EXPECT_EQ(line.ends_with("a [...]"), !whole) << filling;
    }
}

TEST(VisibleText, writes_out_what_terminals_obey_and_leaves_the_rest) {
    static constexpr char const* cases[][2] = {
        {"", ""},
        {"plain \t~ text", "plain \t~ text"},
        {"\x1b[31m\x7f\x01", "\\x1b[31m\\x7f\\x01"},
        {"a\r\nb", "a\\r\\nb"},
        {"\xC2\x80 \xC2\x9B \xC2\x9F \xC2\xA0", "\\u0080 \\u009b \\u009f \xC2\xA0"},
        {"\xD8\x9C \xD8\x9B", "\\u061c \xD8\x9B"},
        {"\xE2\x80\x8D \xE2\x80\x8E \xE2\x80\x8F \xE2\x80\x90", "\xE2\x80\x8D \\u200e \\u200f \xE2\x80\x90"},
        {"\xE2\x80\xA7 \xE2\x80\xA8 \xE2\x80\xAE \xE2\x80\xAF", "\xE2\x80\xA7 \\u2028 \\u202e \xE2\x80\xAF"},
        {"\xE2\x81\xA5 \xE2\x81\xA6 \xE2\x81\xA9 \xE2\x81\xAA", "\xE2\x81\xA5 \\u2066 \\u2069 \xE2\x81\xAA"},
        {"gr\xC3\xBC\xC3\x9F \xE6\x97\xA5 \xF0\x9F\x98\x80",
         "gr\xC3\xBC\xC3\x9F \xE6\x97\xA5 \xF0\x9F\x98\x80"},
        {"latin \xE9 \xE9", "latin \xE9 \xE9"},
        {"\x9B\x33\x31m \x80 \x9F", "\\x9b31m \\x80 \\x9f"},
        {"\xC0\x9B \xE0\x80\x9B", "\xC0\\x9b \xE0\\x80\\x9b"},
        {"\xED\xA0\x80 \xF4\x90\x80\x80", "\xED\xA0\\x80 \xF4\\x90\\x80\\x80"},
        {"\xE2\x80", "\xE2\\x80"},
    };
    for (auto const& [text, visible] : cases)
        EXPECT_EQ(visibleText(text), visible) << testing::PrintToString(text);
    String const plain("gr\xC3\xBC\xC3\x9F");
    EXPECT_EQ(visibleText(plain).array(), plain.array()) << "uncopied";
}

// The name may stand in a directory that everybody writes to.
TEST(Console, takes_only_a_plain_file_of_its_own_for_the_log) {
    test::LogCapture restoresTheStreams;
    test::TemporaryDirectory directory;
    String const path = directory.file("log"), victim = directory.file("victim");
    struct {
        char const* what;
        std::function<bool()> put;
    } const obstacles[] = {
        {"link", [&] { return symlink(victim.str(), path.str()) == 0; }},
        {"dangling link", [&] { return symlink(directory.file("none").str(), path.str()) == 0; }},
        {"second name", [&] { return link(victim.str(), path.str()) == 0; }},
        {"pipe", [&] { return mkfifo(path.str(), 0666) == 0; }},
        {"directory", [&] { return mkdir(path.str(), 0777) == 0; }},
        {"foreign file", [&] { return std::ofstream(path.str()) && chown(path.str(), 65534, 65534) == 0; }},
    };
    for (auto const& [what, put] : obstacles) {
        test::writeFile(victim, "content");
        String reason;
        if (put()) { // not everybody can give files away
            EXPECT_FALSE(Console::instance()->setStream(ERROR, path, &reason)) << what;
            EXPECT_FALSE(reason.empty()) << what;
            EXPECT_EQ(Console::instance()->getFilename(ERROR), "null") << what;
        }
        EXPECT_EQ(test::readFile(victim), "content") << what;
        EXPECT_FALSE(std::filesystem::exists(directory.file("none").str())) << what;
        std::filesystem::remove(path.str());
    }
    ASSERT_EQ(mkfifo(path.str(), 0666), 0);
    Descriptor const reader(open(path.str(), O_RDONLY | O_NONBLOCK));
    EXPECT_FALSE(Console::instance()->setStream(ERROR, path)) << "a pipe that somebody reads";
    std::filesystem::remove(path.str());
    test::writeFile(path, "old lines");
    std::filesystem::permissions(path.str(), std::filesystem::perms::all);
    EXPECT_TRUE(Console::instance()->setStream(ERROR, path));
    EXPECT_EQ(Console::instance()->getFilename(ERROR), path);
    EXPECT_EQ(test::readFile(path), "");
    EXPECT_EQ(std::filesystem::status(path.str()).permissions(), std::filesystem::perms(0600));
}

TEST(Console, a_category_can_be_sent_to_null) {
    test::LogCapture capture;
    Console::instance()->setStream(ERROR, "null");
    log(ERROR, "Class", "method", "lost");
    log(TRACE, "Class", "method", "kept");
    EXPECT_EQ(Console::instance()->getFilename(ERROR), "null");
    EXPECT_EQ(capture.lines().size(), 1u);
    EXPECT_TRUE(capture.contains("kept"));
    Console::instance()->setStream(DEBUG, "/nonexistent/file");
    log(DEBUG, "Class", "method", "lost");
    EXPECT_EQ(capture.lines().size(), 1u);
}

TEST(Console, closing_a_shared_stream_sends_the_others_to_standard_output) {
    test::LogCapture capture;
    test::TemporaryDirectory directory;
    FILE* const shared = std::fopen(directory.file("shared").str(), "w");
    gc::Pointer<Console> const target = Console::instance();
    for (LogCategory const category : {TRACE, DEBUG, ERROR})
        target->setStream(category, shared, "shared");
    target->setStream(ERROR, shared, "again");
    EXPECT_EQ(target->getFilename(TRACE), "shared") << "the same handle is not closed";
    log(DEBUG, "Class", "method", "first");
    target->drain(10000);
    target->setStream(TRACE, directory.file("other"));
    EXPECT_EQ(target->getFilename(DEBUG), "stdout");
    EXPECT_EQ(target->getFilename(ERROR), "stdout");
    EXPECT_NE(test::readFile(directory.file("shared")).find("first"), std::string::npos);
}

// Four categories with a handle each on one file, a million lines from four threads.
TEST(Console, no_line_is_lost_torn_or_out_of_order) {
    constexpr int threads = 4, linesEach = SANITIZED ? 25000 : 250000;
    test::LogCapture capture;
    std::vector<std::thread> writers;
    for (int t = 0; t < threads; ++t)
        writers.emplace_back([t] {
            for (int i = 0; i < linesEach; ++i)
                log(static_cast<LogCategory>((t + i) % 4), toString(t), "Class", i, "end");
        });
    for (std::thread& writer : writers)
        writer.join();
    ASSERT_TRUE(Console::instance()->drain(100000));
    int next[threads] = {};
    for (std::string const& line : capture.lines()) {
        int thread = -1, number = -1, length = 0;
        char category[8];
        std::sscanf(body(line).c_str(), "[%d] %7s Class: %d end%n", &thread, category, &number, &length);
        ASSERT_TRUE(thread >= 0 && thread < threads && length > 0) << line;
        ASSERT_EQ(number, next[thread]++) << line;
    }
    for (int const count : next)
        EXPECT_EQ(count, linesEach);
}
