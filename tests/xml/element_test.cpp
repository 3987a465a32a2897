#include "xml/element.h"

#include "support/logcapture.h"
#include "xml/comment.h"
#include "xml/stringparser.h"
#include "xml/text.h"

#include <gtest/gtest.h>

using namespace quillon;
using namespace quillon::xml;

TEST(XmlElement, is_built_and_written_with_its_markup_escaped) {
    Element root("r");
    root.setAttribute("a", AttributeValue("1"));
    root.setAttribute("b", AttributeValue("\"'&<", AttributeValue::Quote::simpleQuote));
    root.setAttribute("a", AttributeValue("\"'"));
    root.append(std::make_unique<Comment>("note"));
    root.appendElement("t").appendText("<&>");
    EXPECT_EQ(root.toXml("  "),
              "<r a=\"&quot;'\" b='\"&#39;&amp;&lt;'>\r\n   <!--note-->\r\n   <t>&lt;&amp;></t>\r\n  </r>");
}

TEST(XmlElement, get_node_by_path_finds_the_first_that_has_all_steps) {
    auto const root = StringParser::parse("<r><a/><a><b>1</b><b>2</b></a><c/></r>");
    ASSERT_NE(root->getNodeByPath("a/b"), nullptr);
    EXPECT_EQ(root->getNodeByPath("A/b")->getText(), "1");
    EXPECT_EQ(root->getNodeByPath("c/b"), nullptr);

    test::LogCapture log;
    static constexpr char const* bad[] = {"", "/a", "a/", "a//b"};
    for (char const* const path : bad)
        EXPECT_THROW(root->getNodeByPath(path), EXmlElement) << path;
    EXPECT_EQ(log.count("empty item in the searched path"), std::size(bad));
}

TEST(XmlElement, sort_makes_documents_of_the_same_content_equal) {
    auto const one = StringParser::parse("<r b='1' a='2'><y/><x><n>1</n><m/><n>2</n></x></r>");
    auto const other = StringParser::parse("<r a='2' b='1'><x><m/><n>1</n><n>2</n></x><y/></r>");
    one->sort();
    EXPECT_EQ(one->toXml(""), other->toXml(""));
    one->appendElement("z"); // the last child is still known
    EXPECT_EQ(one->getNbElementsByTagName("z"), 1u);
}

TEST(XmlComment, refuses_text_that_would_end_it) {
    EXPECT_EQ(Comment("a-b").toXml(""), "<!--a-b-->");
    EXPECT_THROW(Comment("a--b"), EXmlComment);
    EXPECT_THROW(Comment("a-"), EXmlComment);
}
