// Documents made to be deep, long or repetitive. Quadratic work on these sizes would run for minutes and meet
// the test's time limit; a recursion for each level would overflow the stack.
#include "base/serializearray.h"
#include "base/stringconversion.h"
#include "support/repeated.h"
#include "xml/parserreader.h"
#include "xml/stringparser.h"

#include <gtest/gtest.h>

using namespace quillon;
using test::repeated;
using xml::ParserReader;
using xml::StringParser;

namespace {

constexpr unsigned many = 100000;

String nested(std::string_view open, std::string_view inner, std::string_view close) {
    return String::copyOf(repeated(open, many) + std::string(inner) + repeated(close, many));
}

} // namespace

TEST(XmlHostile, aDeepDocumentIsReadSortedAndWritten) {
    auto reader = ParserReader::fromText(nested("<a>", "x", "</a>"));
    IKeyReader* level = &reader;
    for (unsigned i = 0; i < many; ++i)
        level = &(*level)["a"];
    String text;
    level->read(text);
    EXPECT_EQ(text, "x");

    auto const root = StringParser::parse(nested("<a>", "", "</a>"));
    root->sort();
    // Within a small multiple of the document: the indentation stops growing.
    EXPECT_LT(root->toXml("").length(), many * 300);
}

TEST(XmlHostile, prefixesAreFoundAtAnyDepth) {
    EXPECT_NO_THROW(StringParser::parse(nested("<p:a xmlns:p='u'>", "", "</p:a>")));
    EXPECT_NO_THROW(
        StringParser::parse(String("<r xmlns:p='u'>" + nested("<p:a xmlns='v'>", "", "</p:a>") + "</r>")));
}

TEST(XmlHostile, aLongListIsRead) {
    auto reader =
        ParserReader::fromText(String::copyOf("<r>" + repeated("<Item>x</Item><other/>", many) + "</r>"));
    List<String> list("item");
    reader["r"].read(static_cast<ISerialize&>(list));
    EXPECT_EQ(list.size(), many);
}

TEST(XmlHostile, manyKeysAndAttributesAreRead) {
    std::string keys, attributes;
    for (unsigned i = 0; i < many; ++i) {
        keys += "<k" + std::to_string(i) + "/>";
        attributes += " k" + std::to_string(i) + "=''";
    }
    auto const root = StringParser::parse(String::copyOf("<r" + attributes + ">" + keys + "</r>"));
    EXPECT_EQ(root->getAttributes().size(), many);
    xml::KeyReader reader(*root);
    for (unsigned i = many; i-- > 0;) {
        String const key("k" + toString(i));
        ASSERT_TRUE(reader.exists(key) && reader.size(key) == 1);
        reader[key];
    }
}

TEST(XmlHostile, textInManyPiecesIsPutTogether) {
    auto const parsed = [](std::string_view piece) {
        return StringParser::parse(String::copyOf("<r>" + repeated(piece, many) + "</r>"))
            ->getText()
            .length();
    };
    EXPECT_EQ(parsed("x<!---->"), many);
    EXPECT_EQ(parsed("<![CDATA[x]]>"), many);
    EXPECT_EQ(parsed("&amp;"), many);
    EXPECT_EQ(parsed("&#1"), 3 * many);
}

TEST(XmlHostile, unfinishedMarkupIsRefusedAtOnce) {
    for (std::string_view const piece : {"<a>", "<a b='", "<!--", "<![CDATA[", "<?", "<", "<a b=''"})
        EXPECT_THROW(ParserReader::fromText(String::copyOf("<r>" + repeated(piece, many))),
                     xml::EParserReader)
            << piece;
}
