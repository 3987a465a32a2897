#include "zlib/zip.h"

#include "base/file.h"
#include "support/logcapture.h"
#include "ziparchive.h"
#include "zlib/extraction.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>

using namespace quillon;
using test::forge;
using test::modeOf;
using test::readFile;
using test::writeFile;
using test::writeZip;
using test::ZipField;
using zlib::Zip;

namespace {

class ZipTest : public testing::Test {
protected:
    bool unzip() { return Zip::unzip(m_archive, m_out); }
    String out(std::string_view name) const { return m_directory.file("out/" + std::string(name)); }
    /// One ERROR line that holds `reason`, and none else.
    void expectRefusal(char const* reason) const {
        EXPECT_EQ(m_log.count("ERROR Zip.unzip "), 1u) << m_log.text();
        EXPECT_TRUE(m_log.contains(reason)) << m_log.text();
    }

    test::LogCapture m_log;
    test::TemporaryDirectory m_directory;
    String const m_archive = m_directory.file("a.zip");
    String const m_out = m_directory.file("out");
};

} // namespace

TEST_F(ZipTest, extracts_files_and_directories) {
    std::string const large(300000, 'x');
    writeZip(m_archive,
             {{"top", "one"}, {"a/b/deep", "two"}, {"empty/", ""}, {"./dot//large", large}, {"c\\d", "3"}});
    EXPECT_TRUE(Zip::unzip(m_archive.replace('/', '\\'), m_out.replace('/', '\\') + "/"));
    EXPECT_EQ(readFile(out("c/d")), "3");
    EXPECT_EQ(readFile(out("top")), "one");
    EXPECT_EQ(readFile(out("a/b/deep")), "two");
    EXPECT_EQ(readFile(out("dot/large")), large);
    EXPECT_EQ(modeOf(out("top")), S_IFREG | 0777u);
    for (char const* directory : {"", "a", "a/b", "empty"})
        EXPECT_EQ(modeOf(out(directory)), S_IFDIR | 0700u) << directory;
    EXPECT_EQ(m_log.text(), "");
}

TEST_F(ZipTest, names_are_bytes_whatever_the_locale) {
    ASSERT_STREQ(setlocale(LC_CTYPE, nullptr), "C");
    for (unsigned const flags : {0u, 0x800u}) { // the second says that names are UTF-8
        writeZip(m_archive, {{"d\xC3\xA9j\xC3\xA0/\xE4\xB8\xAD", "x"}});
        forge(m_archive, ZipField::flags, flags);
        EXPECT_TRUE(unzip()) << flags;
        EXPECT_EQ(readFile(out("d\xC3\xA9j\xC3\xA0/\xE4\xB8\xAD")), "x") << flags;
        File::eraseDirectory(m_out);
    }
    writeZip(m_archive, {{"latin\xE9", "x"}});
    EXPECT_TRUE(unzip());
    EXPECT_EQ(readFile(out("latin\xE9")), "x");
    EXPECT_STREQ(setlocale(LC_CTYPE, nullptr), "C");
}

TEST_F(ZipTest, existing_files_are_replaced_and_links_not_followed) {
    File::createDirectory(m_out);
    String const outside = m_directory.file("outside");
    writeFile(outside, "safe");
    writeFile(out("file"), "old");
    ASSERT_EQ(link(out("file").str(), m_directory.file("mapped").str()), 0);
    ASSERT_EQ(symlink(outside.str(), out("link").str()), 0);
    writeZip(m_archive, {{"file", "new"}, {"link", "new"}});
    EXPECT_TRUE(unzip());
    EXPECT_EQ(readFile(out("file")), "new");
    EXPECT_EQ(readFile(m_directory.file("mapped")), "old") << "the old file lives on for who has it open";
    EXPECT_EQ(modeOf(out("link")), S_IFREG | 0777u);
    EXPECT_EQ(readFile(outside), "safe");
}

TEST_F(ZipTest, what_stands_in_the_way_is_not_replaced) {
    String const elsewhere = m_directory.file("elsewhere");
    File::createDirectory(elsewhere);
    File::createDirectory(out("directory"));
    writeFile(out("file"), "");
    ASSERT_EQ(symlink(elsewhere.str(), out("link").str()), 0);
    for (char const* name : {"directory", "file/below", "file/", "link/below", "link/"}) {
        writeZip(m_archive, {{name, name[std::strlen(name) - 1] == '/' ? "" : "x"}});
        EXPECT_FALSE(unzip()) << name;
    }
    EXPECT_EQ(m_log.count("ERROR Zip.unzip "), 5u) << m_log.text();
    List<String> entries;
    File::getFullList(elsewhere, entries);
    EXPECT_TRUE(entries.empty());
}

TEST_F(ZipTest, hostile_archives_are_refused_before_anything_is_written) {
    auto const named = [this](std::string const& name) {
        return [this, name] { writeZip(m_archive, {{"good", "1"}, {name, "2"}}); };
    };
    auto const good = [this](char const* name, ZipField field, unsigned value) {
        return [=, this] {
            writeZip(m_archive, {{"good", "1"}, {name, std::string(1000, '0')}});
            forge(m_archive, field, value);
        };
    };
    std::string deep;
    for (int i = 0; i < 33; ++i)
        deep += "d/";
    struct {
        char const* reason;
        std::function<void()> make;
    } const cases[] = {
        {"leaves the destination: \"../up\"", named("../up")},
        {"leaves the destination: \"a/../../up\"", named("a/../../up")},
        {"leaves the destination: \"a/../../up\"", named("a\\..\\..\\up")},
        {"leaves the destination: \"/etc/absolute\"", named("/etc/absolute")},
        {"leaves the destination: \"..\"", named("..")},
        {"leaves the destination: \"../?[ERROR] forged\"", named("../\n[ERROR] forged")},
        {"too many directories", named(deep + "file")},
        {"neither a file nor a directory: \"link\"",
         [this] {
             writeZip(m_archive, {{"good", "1"}, {"link", "", "/etc/passwd"}});
         }},
        {"neither a file nor a directory: \"good\"",
         good("a", ZipField::attributes, (S_IFCHR | 0666u) << 16)},
        {"an unreadable name", good("\xFF\xFE", ZipField::flags, 0x800)},
        {"an unreadable name",
         [this] {
             writeZip(m_archive, {{"name", "1"}});
             forge(m_archive, "name", std::string("\0ame", 4));
         }},
        {"an encrypted entry",
         [this] {
             writeZip(m_archive, {{"good", "1"}}, "password");
         }},
        {"more than 536870912 bytes", good("large", ZipField::size, 0x18000000)},
        {"more than 4096 entries",
         [this] {
             writeZip(m_archive, std::vector<test::ZipItem>(4097, {"good", "1"}));
         }},
    };
    for (auto const& c : cases) {
        test::LogCapture log;
        c.make();
        EXPECT_FALSE(unzip()) << c.reason;
        EXPECT_EQ(log.count("ERROR Zip.unzip "), 1u) << c.reason << '\n' << log.text();
        EXPECT_TRUE(log.contains(c.reason)) << c.reason << '\n' << log.text();
        EXPECT_EQ(modeOf(m_out), 0u) << c.reason;
    }
}

TEST_F(ZipTest, damaged_and_missing_archives_are_refused) {
    writeZip(m_archive, {{"good", std::string(5000, 'x')}, {"bad", "content"}});
    std::string const whole = readFile(m_archive);
    String const file = m_directory.file("damaged.zip");
    for (std::size_t const length : {std::size_t(0), std::size_t(4), whole.size() / 2, whole.size() - 1}) {
        writeFile(file, whole.substr(0, length));
        EXPECT_FALSE(Zip::unzip(file, m_out)) << length;
    }
    writeFile(file, "PK not really");
    EXPECT_FALSE(Zip::unzip(file, m_out));
    writeZip(file, {});
    EXPECT_FALSE(Zip::unzip(file, m_out));
    for (String const& name : {String::null, m_directory.file("missing"), m_directory.toString()})
        EXPECT_FALSE(Zip::unzip(name, m_out));
    EXPECT_FALSE(Zip::unzip(m_archive, String::null));
    EXPECT_EQ(m_log.count("ERROR Zip.unzip "), 10u) << m_log.text();
    EXPECT_EQ(modeOf(m_out), 0u);
}

TEST_F(ZipTest, content_that_fails_its_checksum_is_not_kept) {
    writeZip(m_archive, {{"good", "1"}});
    std::string bytes = readFile(m_archive);
    for (std::size_t const header : {bytes.find("PK\3\4") + 14, bytes.find("PK\1\2") + 16})
        bytes[header] = static_cast<char>(bytes[header] ^ 1);
    writeFile(m_archive, bytes);
    EXPECT_FALSE(unzip());
    expectRefusal("cannot read \"good\"");
    EXPECT_FALSE(File::exists(out("good")));
}

TEST_F(ZipTest, sizes_are_counted_again_while_writing) {
    writeZip(m_archive, {{"bomb", std::string(1000000, '0')}});
    forge(m_archive, ZipField::size, 1);
    zlib::Limits limits;
    limits.bytes = 100000;
    EXPECT_FALSE(zlib::Extraction(m_archive, m_out, limits).run());
    expectRefusal("more than 100000 bytes");
    EXPECT_EQ(modeOf(out("bomb")), 0u);
}

TEST_F(ZipTest, implied_directories_count_as_entries) {
    writeZip(m_archive, {{"a/b/c", "1"}});
    zlib::Limits limits;
    limits.entries = 1;
    EXPECT_FALSE(zlib::Extraction(m_archive, m_out, limits).run());
    expectRefusal("more than 1 entries");
}

TEST_F(ZipTest, an_entry_cannot_replace_the_archive) {
    File::createDirectory(m_out);
    String const archive = out("a.zip");
    writeZip(archive, {{"x", "1"}, {"./a.zip", "2"}});
    std::string const before = readFile(archive);
    EXPECT_FALSE(Zip::unzip(archive, m_out));
    expectRefusal("would overwrite the archive");
    EXPECT_EQ(readFile(archive), before);
    EXPECT_FALSE(File::exists(out("x")));
}

TEST_F(ZipTest, decompress_package_finds_the_file_named_like_the_archive) {
    String const package = m_directory.file("module.so.zip");
    writeZip(package, {{"module.so", "code"}, {"module.so.sig", "signature"}});
    EXPECT_EQ(Zip::DecompressPackage(package.replace('/', '\\')), m_directory.file("module.so"));
    EXPECT_EQ(readFile(m_directory.file("module.so")), "code");
    String const other = m_directory.file("other.zip");
    writeZip(other, {{"module.so", "code"}});
    EXPECT_TRUE(Zip::DecompressPackage(other).empty());
    EXPECT_TRUE(m_log.contains(
        ("TRACE Zip.DecompressPackage cannot find " + m_directory.file("other")).toString().str()));
    EXPECT_TRUE(Zip::DecompressPackage(String::null).empty());
}
