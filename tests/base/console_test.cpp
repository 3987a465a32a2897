#include "base/console.h"

#include "base/exception.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <chrono>
#include <regex>
#include <thread>

using namespace quillon;

namespace {

/// The line without its time.
std::string body(std::string const& line) {
    return line.substr(std::min(line.find('['), line.size()));
}

} // namespace

TEST(Exception, textNamesThePlaceThatThrewAndThePlaceThatCaught) {
    static constexpr char const* files[][2] = {
        {"/a/b/c", "c"}, {"a\\b\\c", "c"}, {"c", "c"}, {"a\\b/c\\d", "c\\d"}};
    for (auto const& [path, file] : files) {
        EXPECT_EQ(Exception(7, "EX", path, 12).toString(), String("EX:") + file + ":12(7)");
        EXPECT_EQ(Exception("EX", path, 12).toString(), String("EX:") + file + ":12");
    }
    EXPECT_EQ(Exception(7, "EX", "/a/b/c", 12).trace("/d/e.cpp", 3), "EX:c:12(7) -> e.cpp:3");
    EXPECT_EQ(Exception(-7, "EX", "c", 1).getErrorCode(), -7);
}

TEST(Console, linesHaveOneForm) {
    test::LogCapture capture;
    log(TRACE, "tag", "Class", "method", "text");
    log(DEBUG, "tag", "Class", "", "text");
    log(ERROR, "tag", "Class", 42, "text");
    log(ASSERT, "Class", 0, "%s%n");
    std::vector<std::string> const lines = capture.lines();
    ASSERT_EQ(lines.size(), 4u);
    for (std::string const& line : lines)
        EXPECT_TRUE(std::regex_match(
            line, std::regex(R"(\d\d-\d\d-\d\d \d\d:\d\d:\d\d\.(0|[1-9]\d{0,2}) \[.+\] [A-Z]+ Class.*)")))
            << line;
    EXPECT_EQ(body(lines[0]), "[tag] TRACE Class.method text");
    EXPECT_EQ(body(lines[1]), "[tag] DEBUG Class: text");
    EXPECT_EQ(body(lines[2]), "[tag] ERROR Class: 42 text");
    EXPECT_EQ(body(lines[3]), ("[" + Thread::getMyIdString() + "] ASSERT Class: 0 %s%n").toString().view());
}

TEST(Console, aTextCannotForgeALineNorHideTheRestOfItsOwn) {
    test::LogCapture capture;
    log(ERROR, "tag", "Class", "", String("a\r\n[tag] TRACE b\0c", 18));
    std::vector<std::string> const lines = capture.lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(body(lines[0]), "[tag] ERROR Class: a  [tag] TRACE b c");
}

TEST(Console, pathsInTheHomeDirectoryDoNotNameIt) {
    test::LogCapture capture;
    Console::instance()->setHome("/home/bob");
    log(ERROR, "tag", "Class", "", "/home/bob/a and \"/home/bob/b\" but /home/bobby/c");
    Console::instance()->drain(10000);
    Console::instance()->setHome("");
    log(ERROR, "tag", "Class", "", "/home/bob/a");
    std::vector<std::string> const lines = capture.lines();
    EXPECT_EQ(body(lines.at(0)), "[tag] ERROR Class: ~/a and \"~/b\" but /home/bobby/c");
    EXPECT_EQ(body(lines.at(1)), "[tag] ERROR Class: /home/bob/a");
}

TEST(Console, millisecondsAreNotPadded) {
    using namespace std::chrono;
    test::LogCapture capture;
    auto const ms = [] {
        return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count() % 1000;
    };
    while (ms() < 1 || ms() > 60)
        std::this_thread::sleep_for(milliseconds(5));
    log(TRACE, "Class", "method", "text");
    EXPECT_TRUE(std::regex_search(capture.text(), std::regex(R"(:\d\d\.(0|[1-9]\d{0,2}) \[)")))
        << capture.text();
}

TEST(Console, aCategoryCanBeSentToNull) {
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

TEST(Console, closingASharedStreamSendsTheOthersToStandardOutput) {
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
TEST(Console, noLineIsLostTornOrOutOfOrder) {
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
