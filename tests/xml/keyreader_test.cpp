#include "base/file.h"
#include "base/log.h"
#include "support/logcapture.h"
#include "xml/parserreader.h"
#include "xml/stringparser.h"

#include <gtest/gtest.h>

using namespace quillon;
using xml::KeyReader;
using xml::ParserReader;
using xml::StringParser;

namespace {

template <class T>
T value(IKeyReader& reader, char const* key) {
    T result{};
    reader[key].read(result);
    return result;
}

} // namespace

TEST(XmlKeyReader, walks_through_elements_of_one_name_ignoring_case) {
    auto const root = StringParser::parse("<r><Name>1</Name><other/><NAME>2</NAME>t<name>3</name></r>");
    KeyReader reader(*root);
    EXPECT_EQ(reader.size("nAmE"), 3u);
    EXPECT_EQ(value<int>(reader, "name"), 1);
    EXPECT_EQ(value<int>(reader, "Name"), 2);
    EXPECT_EQ(reader.size("name"), 1u);
    EXPECT_EQ(value<int>(reader, "name"), 3);
    EXPECT_FALSE(reader.exists("name"));
    EXPECT_TRUE(reader.exists(String("other")));
    EXPECT_THROW(reader["name"], xml::EKeyReader);
}

TEST(XmlKeyReader, skips_what_another_reader_has_hidden_and_finds_what_is_added) {
    auto const root = StringParser::parse("<r><a>1</a><a>2</a><a>3</a></r>");
    KeyReader one(*root), other(*root);
    EXPECT_TRUE(one.exists("a"));
    EXPECT_EQ(value<int>(other, "a"), 1);
    EXPECT_EQ(one.size("a"), 2u);
    EXPECT_EQ(value<int>(one, "a"), 2);
    EXPECT_EQ(value<int>(other, "a"), 3);
    EXPECT_THROW(one["a"], xml::EKeyReader);
    root->appendElement("a").appendText("4");
    EXPECT_EQ(value<int>(one, "a"), 4);
    root->getFirstChild()->setHidden(false);
    EXPECT_EQ(value<int>(other, "a"), 1);
}

TEST(XmlKeyReader, converts_text_without_refusing_garbage) {
    auto const root = StringParser::parse("<r><a>-12</a><a>4000000000</a><a>garbage</a><a>65535</a><a>-3</a>"
                                          "<a>200</a><a>xyz</a><a> m </a><a/></r>");
    KeyReader reader(*root);
    EXPECT_EQ(value<int>(reader, "a"), -12);
    EXPECT_EQ(value<unsigned>(reader, "a"), 4000000000u);
    EXPECT_EQ(value<int>(reader, "a"), 0);
    EXPECT_EQ(value<unsigned short>(reader, "a"), 65535);
    EXPECT_EQ(value<short>(reader, "a"), -3);
    EXPECT_EQ(value<unsigned char>(reader, "a"), 200);
    EXPECT_EQ(value<char>(reader, "a"), 'x');
    EXPECT_EQ(value<Memory>(reader, "a"), Memory(String(" m ")));
    EXPECT_EQ(value<String>(reader, "a"), "");
}

TEST(XmlKeyReader, reads_booleans_in_their_words_only) {
    auto const read = [](char const* text) {
        auto const root = StringParser::parse(String("<r><b>" + String(text) + "</b></r>"));
        KeyReader reader(*root);
        return value<bool>(reader, "b");
    };
    EXPECT_TRUE(read("true") && read("YES") && read("1"));
    EXPECT_FALSE(read("False") || read("no") || read("0"));
    for (char const* const text : {"2", "", "01", "on", " true"}) {
        test::LogCapture log;
        EXPECT_THROW(read(text), xml::EKeyReader) << text;
        EXPECT_TRUE(log.contains("TRACE xml.KeyReader.read cannot read boolean")) << log.text();
    }
}

TEST(XmlParserReader, reads_the_document_once_through_the_name_of_its_root) {
    test::TemporaryDirectory directory;
    String const file = directory.file("file");
    EXPECT_THROW(ParserReader{file}, EFile);
    test::writeFile(file, "<a/>garbage");
    EXPECT_THROW(ParserReader{file}, xml::EParserReader);
    test::writeFile(file, "<?xml version='1.0'?><Dll x='1'><name>n</name></Dll>");
    ParserReader reader(file);
    String text;
    EXPECT_THROW(reader.read(text), xml::EParserReader);
    EXPECT_THROW(reader["b"], xml::EParserReader);
    EXPECT_EQ(reader.size("dll"), 1u);
    IKeyReader& dll = reader["dll"];
    EXPECT_THROW(reader["dll"], xml::EParserReader);
    EXPECT_EQ(value<String>(dll, "name"), "n");
    EXPECT_THROW(dll["name"], xml::EKeyReader) << "handed out twice";
    EXPECT_TRUE(dll.hasAttribute("x") && !dll.hasAttribute("X"));
    EXPECT_EQ(dll.getAttribute("x"), "1");
}
