// What the parser takes, what it makes of it, and how it refuses the rest.
#include "base/log.h"
#include "support/logcapture.h"
#include "xml/stringparser.h"

#include <gtest/gtest.h>

using namespace quillon;
using namespace quillon::xml;

namespace {

String parsedText(std::string_view content) {
    return StringParser::parse(String::copyOf("<a>" + std::string(content) + "</a>"))->getText();
}

/// The name of the exception that parsing throws, or "none".
String failure(String const& document) {
    try {
        StringParser::parse(document);
        return "none";
    } catch (EXmlNode const& e) {
        return e.getName();
    } catch (EParser const& e) {
        return e.getName();
    }
}

} // namespace

TEST(XmlParser, keeps_character_data_as_one_text_byte_for_byte) {
    using namespace std::string_view_literals;
    static constexpr struct {
        std::string_view raw, text;
    } cases[] = {
        {" \r\n\t x \r ", " \r\n\t x \r "},
        {"one<!-- a comment -->two<?pi?>three", "onetwothree"},
        {"a<![CDATA[<b>&amp;]] ]]>c<![CDATA[]]>d", "a<b>&amp;]] cd"},
        {"]]> > \" '", "]]> > \" '"},
        {"nul\0byte \xFF\xFE"sv, "nul\0byte \xFF\xFE"sv},
        {"first<b>inner</b>second", "first"},
        {"", ""},
        {"&lt;&gt;&amp;&quot;&apos;", "<>&\"'"},
        {"&#39;&#x27;&#0000039;", "'''"},
        {"&#xE9; &#x20AC; &#x1F600;", "\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"},
        {"a&&amp;&", "a&&&"},
        {"&#;&#x;&#12", "&#;&#x;&#12"},
        {"&#0;&#xD800;&#x110000;&#99999999999;", "&#0;&#xD800;&#x110000;&#99999999999;"},
        {"&unknown;&#xZ;&#1a;", "&unknown;&#xZ;&#1a;"},
        {"&amp;lt;", "&lt;"},
    };
    for (auto const& c : cases)
        EXPECT_EQ(parsedText(c.raw).view(), c.text) << c.raw;
}

TEST(XmlParser, reads_what_stands_around_and_in_tags) {
    static constexpr struct {
        std::string_view document, xml;
    } cases[] = {
        {"\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!-- c --><?pi a?>\n<a/>\n<!-- c -->\n", "<a/>"},
        {"<a\r\n\tx = '1'\ty=\"2\" ></a >", "<a x='1' y=\"2\"/>"},
        {"<a x='\"&#39;&amp;' y=\"'&quot;\"/>", "<a x='\"&#39;&amp;' y=\"'&quot;\"/>"},
        {"<a>x&lt;y</a>", "<a>x&lt;y</a>"},
        {"<a><b><c/></b><d>t</d></a>", "<a>\r\n <b>\r\n  <c/>\r\n </b>\r\n <d>t</d>\r\n</a>"},
        {"<a>t<b><c/></b></a>", "<a>t<b><c/></b></a>"},
        {"<a x='>'/>", "<a x='>'/>"},
        {"<p:a xmlns:p='u' xmlns='v'><p:b p:x='1' xml:lang='en'/></p:a>",
         "<p:a xmlns:p='u' xmlns='v'>\r\n <p:b p:x='1' xml:lang='en'/>\r\n</p:a>"},
        {"<a xmlns='u'><b xmlns='v'/><c xmlns='w'/></a>",
         "<a xmlns='u'>\r\n <b xmlns='v'/>\r\n <c xmlns='w'/>\r\n</a>"},
    };
    for (auto const& c : cases)
        EXPECT_EQ(StringParser::parse(String::copyOf(c.document))->toXml("").view(), c.xml);
}

TEST(XmlParser, refuses_with_the_components_exception_and_reason) {
    static constexpr struct {
        char const* document;
        char const* exception;
        char const* logged;
    } cases[] = {
        {"", "EXmlStringParser", "no tag found: "},
        {"<!-- only -->", "EXmlStringParser", "no tag found: "},
        {"text", "EXmlStringParser", "bad xml file format: text"},
        {"<!DOCTYPE a [<!ENTITY b SYSTEM \"file:///etc/passwd\">]><a>&b;</a>", "EXmlStringParser",
         "bad xml file format: <!DOCTYPE"},
        {"<a/>garbage", "EXmlStringParser", "bad xml file format: garbage"},
        {"<a/><b/>", "EXmlStringParser", "bad xml file format: <b/>"},
        {"< a/>", "EXmlElement", "no tag found: < a/>"},
        {"<a><></a>", "EXmlElement", "no tag found: <></a>"},
        {"</a>", "EXmlElement", "no tag found: </a>"},
        {"<a", "EXmlElement", "bad xml file format: <a"},
        {"<a/ >", "EXmlElement", "bad xml file format: <a/ >"},
        {"<a><b<c/></a>", "EXmlElement", "bad xml file format: <b<c/>"},
        {"<a></a", "EXmlElement", "bad xml file format: </a"},
        {"<a><!DOCTYPE b></a>", "EXmlElement", "bad xml file format: <!DOCTYPE b>"},
        {"<a><![CDATA[x</a>", "EXmlElement", "bad xml file format: <![CDATA[x</a>"},
        {"<a>", "EXmlElement", "Problem with element: a"},
        {"<a><b></a></b>", "EXmlElement", "Problem with element: b"},
        {"<a></A>", "EXmlElement", "Problem with element: a"},
        {"<p:a/>", "EXmlElement", "non-defined qualified name for element"},
        {"<a><b xmlns:p='u'/><p:c/></a>", "EXmlElement", "non-defined qualified name for element"},
        {"<a><!-- b</a>", "EXmlComment", "bad xml file format: <!-- b</a>"},
        {"<?xml <a/>", "EXmlComment", "bad xml file format: <?xml <a/>"},
        {"<a b/>", "EXmlAttribute", "cannot parse attributes"},
        {"<a ='1'/>", "EXmlAttribute", "cannot parse attributes"},
        {"<a b='1'c='2'/>", "EXmlAttribute", "cannot parse attributes"},
        {"<a b='1' b='2'/>", "EXmlAttribute", "cannot parse attributes"},
        {"<a p:b='1'/>", "EXmlAttribute", "non-defined qualified name for attribute : p:b"},
        {"<a xmlns='u' xmlns='v'/>", "EXmlAttribute", "redefinition of xmlns attribute"},
        {"<a xmlns:p='u' xmlns:p='v'/>", "EXmlAttribute", "redefinition of xmlns attribute : p"},
        {"<a b=/>", "EXmlAttributeValue", "invalid attribute value (missing value with =)"},
        {"<a b=1/>", "EXmlAttributeValue", "invalid attribute value (missing value with =)"},
        {"<a b='1/>", "EXmlAttributeValue", "bad xml file format: '1/>"},
        {"<a b='<'/>", "EXmlAttributeValue", "bad xml file format: '<'/>"},
    };
    for (auto const& c : cases) {
        test::LogCapture log;
        EXPECT_EQ(failure(c.document), c.exception) << c.document;
        EXPECT_EQ(log.lines().size(), 1u) << c.document;
        EXPECT_TRUE(log.contains(c.logged)) << c.document << "\n" << log.text();
    }
}

TEST(XmlParser, logs_one_short_line_whatever_the_document_holds) {
    test::LogCapture log;
    EXPECT_EQ(failure(String::copyOf("<a/>\nx\n[t] ERROR forged" + std::string(100000, 'y'))),
              "EXmlStringParser");
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_LT(log.lines()[0].size(), 200u);
}

TEST(XmlParser, names_only_the_line_of_a_document_that_holds_secrets) {
    for (char const* const fault :
         {"<secret", "a<secret>b", "<secret a='1' xmlns:secret='' xmlns:secret=''/>", "<a secret:b=''/>",
          "<a b='secret", "<!secret>", "<![CDATA[secret", "<!-- secret", "</secret>", "</a></a>secret"}) {
        test::LogCapture log;
        EXPECT_ANY_THROW(StringParser::parse("<a>\r\n" + String(fault), Disclosure::lines)) << fault;
        EXPECT_FALSE(log.contains("secret")) << log.text();
        EXPECT_TRUE(log.contains(": line 2\n")) << log.text();
    }
}

TEST(XmlParser, every_prefix_of_a_document_is_refused) {
    String const whole("<?xml version='1.0'?><!--c--><a b='c'>t&amp;<![CDATA[d]]><e/><!--f--></a>");
    EXPECT_EQ(failure(whole), "none");
    for (unsigned length = 0; length < whole.length(); ++length)
        EXPECT_NE(failure(whole.range(0, length).clone()), "none") << length;
}
