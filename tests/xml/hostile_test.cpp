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

TEST(XmlHostile, a_deep_document_is_read_sorted_and_written) {
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

TEST(XmlHostile, prefixes_are_found_at_any_depth) {
    EXPECT_NO_THROW(StringParser::parse(nested("<p:a xmlns:p='u'>", "", "</p:a>")));
    EXPECT_NO_THROW(
        StringParser::parse(String("<r xmlns:p='u'>" + nested("<p:a xmlns='v'>", "", "</p:a>") + "</r>")));
}

TEST(XmlHostile, a_long_list_is_read) {
    auto reader =
        ParserReader::fromText(String::copyOf("<r>" + repeated("<Item>x</Item><other/>", many) + "</r>"));
    List<String> list("item");
    reader["r"].read(static_cast<ISerialize&>(list));
    EXPECT_EQ(list.size(), many);
}

TEST(XmlHostile, many_keys_and_attributes_are_read) {
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

TEST(XmlHostile, text_in_many_pieces_is_put_together) {
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

TEST(XmlHostile, unfinished_markup_is_refused_at_once) {
    for (std::string_view const piece : {"<a>", "<a b='", "<!--", "<![CDATA[", "<?", "<", "<a b=''"})
        EXPECT_THROW(ParserReader::fromText(String::copyOf("<r>" + repeated(piece, many))),
                     xml::EParserReader)
            << piece;
}
