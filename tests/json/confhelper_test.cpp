// Required and optional keys, over both kinds of documents.
#include "base/confhelper.h"

#include "base/serializearray.h"
#include "json/JSONReader.h"
#include "support/logcapture.h"
#include "xml/parserreader.h"

#include <gtest/gtest.h>

using namespace quillon;

namespace {

constexpr unsigned optional = ConfReadHelper::optional;
constexpr unsigned required = ConfReadHelper::required;

struct JsonDocument {
    json::JSONWrapperFromString json{
        R"({"text":"t","list":["x","y"],"null":null,"on":true,"bad":"maybe","outer":{"number":-3},"hollow":{}})"};
    json::JSONPolyReader poly = json.getReader();
    IKeyReader& record = *poly;
};

struct XmlDocument {
    xml::ParserReader document = xml::ParserReader::fromText(
        "<r><text>t</text><list><item>x</item><item>y</item></list><on>true</on><bad>maybe</bad>"
        "<bad>maybe</bad><outer><number>-3</number></outer><hollow/></r>");
    IKeyReader& record = document["r"];
};

struct Record : IConf {
    using IConf::write;
    void write(IKeyReader& reader) override { ConfReadHelper::readKey(reader, "number", number, required); }
    int number = 0;
};

template <class Document>
class ConfHelper : public testing::Test {
protected:
    IKeyReader& record() { return m_document.record; }

private:
    Document m_document;
};

using Documents = testing::Types<JsonDocument, XmlDocument>;
TYPED_TEST_SUITE(ConfHelper, Documents);

} // namespace

TYPED_TEST(ConfHelper, keys_are_required_or_optional) {
    static constexpr char const* unreadable =
        "ERROR ConfReadHelper.readKey Error while reading key: \"bad\"\n";
    static constexpr struct {
        char const* key;
        unsigned flags;
        bool isRead, throws;
        char const* logged;
    } cases[] = {
        {"on", required, true, false, ""},
        {"absent", optional, false, false, ""},
        {"null", optional, false, false, ""},
        {"absent", required, false, true, "ERROR ConfReadHelper.readKey Missing tag: <absent>\n"},
        {"bad", optional, false, false, unreadable},
        {"null", required, false, true, "ERROR ConfReadHelper.readKey Missing tag: <null>\n"},
        {"bad", required, false, true, unreadable},
    };
    for (auto const& c : cases) {
        test::LogCapture log;
        bool value = false;
        try {
            EXPECT_EQ(ConfReadHelper::readKey(this->record(), c.key, value, c.flags), c.isRead) << c.key;
            EXPECT_FALSE(c.throws) << c.key;
        } catch (EConfMissingKey const& e) {
            EXPECT_TRUE(c.throws) << c.key;
            EXPECT_TRUE(e.toString().starts("EConfMissingKey:confhelper.cpp:"));
        }
        EXPECT_EQ(value, c.isRead);
        EXPECT_TRUE(log.contains(c.logged)) << log.text();
        EXPECT_EQ(log.text().empty(), *c.logged == '\0') << log.text();
        EXPECT_EQ(log.count("TRACE Exception.catch EKeyReader:"), c.logged == unreadable) << log.text();
    }
}

TYPED_TEST(ConfHelper, reads_texts_lists_and_records) {
    String text;
    Vector<String> list("item");
    list.add("old");
    Record record;
    EXPECT_TRUE(ConfReadHelper::readKey(this->record(), "text", text, required));
    EXPECT_TRUE(ConfReadHelper::readKey(this->record(), "list", list, required));
    EXPECT_TRUE(ConfReadHelper::readKey(this->record(), "outer", record, required));
    EXPECT_EQ(text, "t");
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[1], "y");
    EXPECT_EQ(record.number, -3);
    EXPECT_THROW(ConfReadHelper::readKey(this->record(), "hollow", record, optional), EConfMissingKey)
        << "what a record requires is required of an optional record too";
}

TYPED_TEST(ConfHelper, places_are_reached_through_absent_ones) {
    test::LogCapture log;
    ConfReadHelper const top(this->record());
    EXPECT_FALSE(top.get("outer", required).get("number", required).missing());
    EXPECT_TRUE(top.get("absent", optional).get("below", optional).missing());
    EXPECT_EQ(log.text(), "");
    EXPECT_THROW(top.get("absent", optional).get("below", required), EConfMissingKey);
    EXPECT_TRUE(log.contains("ERROR ConfReadHelper.get Missing tag: <below>\n"));
}
