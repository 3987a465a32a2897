#include "base/file.h"

#include "support/logcapture.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <set>

using namespace quillon;
using test::modeOf;
using test::readFile;
using test::writeFile;

namespace {

class FileTest : public testing::Test {
protected:
    String path(std::string_view name) const { return m_directory.file(name); }
    test::TemporaryDirectory m_directory;
};

std::string sorted(List<String> const& list) {
    std::set<std::string_view> names;
    for (String const& name : list)
        names.insert(name.view());
    std::string all;
    for (std::string_view const name : names)
        all.append(name).append(" ");
    return all;
}

} // namespace

TEST_F(FileTest, application_data_is_below_the_home_directory) {
    std::string const current = std::filesystem::current_path();
    std::string const home = std::getenv("HOME") ? std::getenv("HOME") : "/";
    struct {
        char const *home, *user;
        std::string directory;
    } const cases[] = {
        {"/Users/x", "bob", "/Users/x/.Tarvik/"},
        {"/Users/x", nullptr, "/Users/x/.Tarvik/"},
        {nullptr, "bob", "/home/bob/.Tarvik/"},
        {nullptr, nullptr, current},
        {"", "bob", current},
    };
    auto const set = [](char const* name, char const* value) {
        value ? setenv(name, value, 1) : unsetenv(name);
    };
    for (auto const& c : cases) {
        test::LogCapture log;
        set("HOME", c.home);
        set("USER", c.user);
        EXPECT_EQ(File::getUserApplicationDataDirectory().view(), c.directory);
        EXPECT_EQ(log.count("can not retrieve user application data folder\n"), c.directory == current);
    }
    set("HOME", home.c_str());
}

TEST_F(FileTest, paths_are_taken_apart) {
    static constexpr char const* cases[][4] = {
        // path, sub path, folder name, extension
        {"/a/b/c.txt", "/a/b/", "/a/b", "txt"},
        {"a\\b\\c", "a/b/", "a/b", ""},
        {"/a/b/", "/a/", "/a/b", ""},
        {"/c", "/", "", ""},
        {"\"/a b/c\"", "/a b/", "\"/a b", ""},
        {"\"c\"", "\"c\"", "", ""},
        {"/", "/", "", ""},
        {"a/", "a/", "a", ""},
        {"", "", "", ""},
        {"a.b/c", "a.b/", "a.b", ""},
    };
    for (auto const& [path, sub, folder, extension] : cases) {
        EXPECT_EQ(File::getSubPath(path), sub) << path;
        EXPECT_EQ(File::getFolderName(path), folder) << path;
        EXPECT_EQ(File::getFileExtension(path), extension) << path;
    }
}

TEST_F(FileTest, open_modes) {
    static constexpr struct {
        File::ModeOption mode;
        bool createsMissing;
        char const* content; // of a file that held "old" after writing "NE"
    } cases[] = {
        {File::in, false, "old"},
        {File::out, true, "NE"},
        {File::in | File::out, false, "NEd"},
        {File::in | File::out | File::truncate, true, "NE"},
        {File::append, true, "oldNE"},
        {File::out | File::append, true, "oldNE"},
        {File::in | File::out | File::atEnd, false, "oldNE"},
    };
    for (auto const& c : cases) {
        String const file = path("file");
        File missing;
        EXPECT_EQ(missing.open(path("missing"), c.mode), c.createsMissing) << c.mode;
        EXPECT_EQ(modeOf(path("missing")), c.createsMissing ? S_IFREG | 0777u : 0u) << c.mode;
        std::filesystem::remove(path("missing").str());
        writeFile(file, "old");
        File opened;
        ASSERT_TRUE(opened.open(file.replace('/', '\\'), c.mode));
        try {
            opened.write("NE");
        } catch (EFile const&) {
            EXPECT_EQ(c.mode, File::in);
        }
        EXPECT_TRUE(opened.close());
        EXPECT_EQ(readFile(file), c.content) << c.mode;
    }
    File directory;
    EXPECT_FALSE(directory.open(m_directory.toString(), File::in));
    EXPECT_FALSE(directory.isOpened());
}

TEST_F(FileTest, is_a_stream_of_values) {
    File file;
    ASSERT_TRUE(file.open(path("file"), File::in | File::out | File::truncate));
    file.write(-5);
    file.write("text");
    EXPECT_EQ(file.sizeToRead(), 0u);
    file.setReadPos(0);
    int number = 0;
    Memory bytes;
    String rest;
    file.read(number);
    file.read(bytes, 3);
    EXPECT_EQ(file.getReadPos(), 7u);
    file.read(rest);
    EXPECT_TRUE(number == -5 && bytes == Memory("tex", 3) && rest == "t");
    EXPECT_THROW(file.read(number), EFile);
    ASSERT_TRUE(file.seek(-2, File::end));
    file.write(Memory("!", 1), 5);
    EXPECT_TRUE(file.close());
    EXPECT_EQ(readFile(path("file")).substr(4), "te!t");
}

TEST_F(FileTest, what_fits_into_no_string_is_refused) {
    String const content("a\0b\r\n", 5);
    File::writeAllFile(path("file"), content);
    EXPECT_EQ(File::readAllFile(path("file")), content);
    for (unsigned long const size : {(1ul << 32) - 1, 1ul << 32, 1ul << 33}) { // sparse
        std::filesystem::resize_file(path("file").str(), size);
        test::LogCapture log;
        EXPECT_THROW(File::readAllFile(path("file")), EFile) << size;
        File file;
        Memory bytes;
        file.open(path("file"), File::in);
        EXPECT_THROW(file.read(bytes), EFile) << size;
        EXPECT_EQ(log.count("ERROR File.read too large to be read at once: /"), 2u) << size;
    }
}

// C code takes "kept\0x" for "kept".
TEST_F(FileTest, a_name_with_a_nul_is_nobodys_name) {
    using Name = String const&;
    static constexpr struct {
        char const* what;
        void (*tryIt)(Name bad, Name other);
    } cases[] = {
        {"remove", [](Name bad, Name) { File::remove(bad); }},
        {"move", [](Name bad, Name other) { File::move(bad, other); }},
        {"move to", [](Name bad, Name other) { File::move(other, bad); }},
        {"copy", [](Name bad, Name other) { File::copy(bad, other); }},
        {"copy to", [](Name bad, Name other) { File::copy(other, bad); }},
        {"createDirectory", [](Name bad, Name) { File::createDirectory(bad + "/new"); }},
        {"removeDirectory", [](Name bad, Name) { File::removeDirectory(bad); }},
        {"eraseDirectory", [](Name bad, Name) { File::eraseDirectory(bad); }},
        {"replaceAllFile", [](Name bad, Name) { File::replaceAllFile(bad, "x"); }},
        {"getFileLastWrite", [](Name bad, Name) { File::getFileLastWrite(bad); }},
        {"setFileLastWrite", [](Name bad, Name) { File::setFileLastWrite(bad, {}); }},
    };
    String const nul("\0x", 2), directory = path("kept"), file = path("kept/file"), empty = path("empty");
    for (auto const& [what, tryIt] : cases)
        for (String const& victim : {file, directory, empty}) {
            File::ensureDirectory(directory);
            File::ensureDirectory(empty);
            writeFile(file, "content");
            writeFile(path("other"), "other");
            EXPECT_THROW(tryIt(victim + nul, path("other")), EFile) << what << " " << victim.str();
            EXPECT_EQ(readFile(file), "content") << what;
            EXPECT_EQ(readFile(path("other")), "other") << what;
            EXPECT_TRUE(File::isDirectory(empty)) << what;
            List<String> names;
            File::getFullList(m_directory.toString(), names);
            EXPECT_EQ(sorted(names), "empty kept other ") << what;
        }
    List<String> names;
    File::getFullList(directory + nul, names);
    EXPECT_EQ(names.size(), 0u);
    EXPECT_FALSE(File::isDirectory(directory + nul));
    EXPECT_EQ(File::getSize(file + nul), 0u);
}

TEST_F(FileTest, directories_and_unreadable_names_do_not_exist_as_files) {
    writeFile(path("file"), "");
    EXPECT_TRUE(File::exists(path("file").replace('/', '\\')));
    EXPECT_FALSE(File::exists(m_directory.toString()));
    EXPECT_FALSE(File::exists(path("missing")));
    EXPECT_FALSE(File::exists(path(std::string("file\0x", 6)))) << "not another name's file";
    ASSERT_EQ(mkfifo(path("fifo").str(), 0600), 0);
    EXPECT_TRUE(File::exists(path("fifo"))) << "and does not wait for a writer";
    EXPECT_TRUE(File::isDirectory(m_directory.toString()));
    EXPECT_FALSE(File::isDirectory(path("file")));
}

TEST_F(FileTest, removes_moves_and_copies) {
    test::LogCapture log;
    EXPECT_THROW(File::remove(path("missing")), EFile);
    EXPECT_EQ(log.text(), "") << "without a line";
    writeFile(path("a"), "A");
    writeFile(path("b"), "longer");
    File::copy(path("a"), path("b"));
    EXPECT_EQ(readFile(path("b")), "A");
    File::move(path("a"), path("b"));
    EXPECT_FALSE(File::exists(path("a")));
    EXPECT_THROW(File::move(path("missing"), path("x")), EFile);
    EXPECT_THROW(File::copy(path("missing"), path("x")), EFile);
    EXPECT_EQ(log.count("ERROR File."), 2u);
    File::setFileLastWrite(path("b"), DateTime(86400));
    EXPECT_EQ(File::getFileLastWrite(path("b")).toString(), "1970-01-02T00:00:00Z");
}

TEST_F(FileTest, directories_are_made_for_their_owner_alone) {
    File::createDirectory(path("a/b/"));
    File::ensureDirectory(path("a\\b"));
    for (char const* directory : {"a", "a/b"})
        EXPECT_EQ(modeOf(path(directory)), S_IFDIR | 0700u);
    writeFile(path("a/b/file"), "12345");
    for (char const* bad : {"a/b/file", "a/b/file/c"})
        EXPECT_THROW(File::createDirectory(path(bad)), EFile);
    EXPECT_THROW(File::removeDirectory(path("a")), EFile);
    EXPECT_EQ(File::getSize(path("a")), 5u);
    writeFile(path("outside"), "");
    ASSERT_EQ(symlink(m_directory.path().c_str(), path("a/link").str()), 0);
    File::eraseDirectory(path("a"));
    EXPECT_EQ(modeOf(path("a")), 0u);
    EXPECT_TRUE(File::exists(path("outside"))) << "links are not followed";
}

TEST_F(FileTest, listings) {
    for (char const* directory : {"top/sub/deep", "top/empty"})
        File::createDirectory(path(directory));
    for (char const* file : {"top/a.txt", "top/b.so", "top/sub/c.txt", "top/sub/deep/d"})
        writeFile(path(file), "");
    ASSERT_EQ(symlink(path("top").str(), path("top/link").str()), 0);
    struct {
        void (*list)(String const&, List<String>&);
        char const *method, *names;
    } const cases[] = {
        {&File::getFullList, "getFullList", "a.txt b.so empty link sub "},
        {&File::getFilesList, "getFilesList", "a.txt b.so link "},
        {&File::getSubDirectoriesList, "getSubDirectoriesList", "empty sub "},
        {&File::getRecursiveFilesList, "getRecursiveFilesList", "a.txt b.so link sub/c.txt sub/deep/d "},
    };
    for (auto const& c : cases) {
        test::LogCapture log;
        List<String> names;
        c.list(path("top"), names);
        EXPECT_EQ(log.text(), "");
        c.list(path("missing"), names);
        EXPECT_EQ(sorted(names), c.names) << c.method;
        EXPECT_TRUE(log.contains("ERROR File." + std::string(c.method) + " unable to opendir() /"))
            << log.text();
    }
}
