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

TEST(XmlKeyReader, walksThroughElementsOfOneNameIgnoringCase) {
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

TEST(XmlKeyReader, skipsWhatAnotherReaderHasHiddenAndFindsWhatIsAdded) {
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

TEST(XmlKeyReader, convertsTextWithoutRefusingGarbage) {
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

TEST(XmlKeyReader, readsBooleansInTheirWordsOnly) {
    static constexpr struct {
        char const* text;
        int expected; // -1: refused
    } cases[] = {{"true", 1}, {"YES", 1}, {"1", 1},   {"False", 0}, {"no", 0},    {"0", 0},
                 {"2", -1},   {"", -1},   {"01", -1}, {"on", -1},   {" true", -1}};
    for (auto const& c : cases) {
        auto const root = StringParser::parse(String("<r><b>" + String(c.text) + "</b></r>"));
        KeyReader reader(*root);
        if (c.expected >= 0) {
            EXPECT_EQ(value<bool>(reader, "b"), c.expected == 1) << c.text;
            continue;
        }
        test::LogCapture log;
        EXPECT_THROW(value<bool>(reader, "b"), xml::EKeyReader) << c.text;
        EXPECT_TRUE(log.contains("TRACE xml.KeyReader.read cannot read boolean")) << log.text();
    }
}

TEST(XmlKeyReader, hasAttributesButNoPositions) {
    auto const root = StringParser::parse("<r x='1'/>");
    KeyReader reader(*root);
    EXPECT_TRUE(reader.hasAttribute("x"));
    EXPECT_EQ(reader.getAttribute("x"), "1");
    EXPECT_FALSE(reader.hasAttribute("y"));
    EXPECT_EQ(reader.getAttribute("y"), "");
    Memory bytes;
    char raw[1];
    EXPECT_THROW(reader.read(bytes, 1), xml::EKeyReader);
    EXPECT_THROW(reader.read(raw, 1), xml::EKeyReader);
    EXPECT_THROW(reader.sizeToRead(), xml::EKeyReader);
    EXPECT_THROW(reader.setReadPos(0), xml::EKeyReader);
}

TEST(XmlParserReader, readsTheDocumentThroughTheNameOfItsRoot) {
    auto reader = ParserReader::fromText("<?xml version='1.0'?><Dll><name>n</name></Dll>");
    EXPECT_TRUE(reader.exists("dll"));
    EXPECT_EQ(reader.size("dll"), 1u);
    IKeyReader& dll = reader["dll"];
    EXPECT_EQ(value<String>(dll, "name"), "n");
    try {
        dll["name"];
        FAIL() << "the element was handed out twice";
    } catch (xml::EParserReader const&) {
        FAIL() << "an element's reader speaks for itself";
    } catch (xml::EKeyReader const&) {
    }
}

TEST(XmlParserReader, refusesOtherUses) {
    auto reader = ParserReader::fromText("<a>1</a>");
    String text;
    bool flag;
    Memory bytes;
    EXPECT_THROW(reader["b"], xml::EParserReader);
    EXPECT_THROW(reader.read(text), xml::EParserReader);
    EXPECT_THROW(reader.read(flag), xml::EParserReader);
    EXPECT_THROW(reader.read(bytes, 1), xml::EParserReader);
    EXPECT_EQ(reader.getAttribute("x"), "");
    EXPECT_EQ(value<int>(reader, "A"), 1);
    EXPECT_THROW(reader["a"], xml::EParserReader);
}

TEST(XmlParserReader, tellsAFileThatCannotBeOpenedFromOneThatDoesNotParse) {
    test::TemporaryDirectory directory;
    EXPECT_THROW(ParserReader(directory.file("absent")), EFile);
    for (char const* const content : {"", "no document", "<a><b></a>", "<a b/>"}) {
        test::writeFile(directory.file("file"), content);
        EXPECT_THROW(ParserReader(directory.file("file")), xml::EParserReader) << content;
    }
    test::writeFile(directory.file("file"), "<a>1</a>");
    ParserReader reader(directory.file("file"));
    EXPECT_EQ(value<int>(reader, "a"), 1);
}
