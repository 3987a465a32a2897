// Required and optional keys, over both kinds of documents.
#include "base/confhelper.h"
#include "base/serializearray.h"
#include "support/logcapture.h"
#include "xml/parserreader.h"
#include "json/JSONPolyReader.h"
#include "json/JSONWrapperFromString.h"

#include <gtest/gtest.h>

using namespace quillon;

namespace {

constexpr unsigned optional = ConfReadHelper::optional;
constexpr unsigned required = ConfReadHelper::required;

struct JsonDocument {
    json::JSONWrapperFromString json{
        R"({"text":"t","number":-3,"list":["x","y"],"null":null,"flag":"maybe","outer":{"inner":"i"}})"};
    json::JSONPolyReader poly = json.getReader();
    IKeyReader& record = *poly;
};

struct XmlDocument {
    xml::ParserReader document = xml::ParserReader::fromText(
        "<r><text>t</text><number>-3</number><list><item>x</item><item>y</item></list><flag>maybe</flag>"
        "<outer><inner>i</inner></outer></r>");
    IKeyReader& record = document["r"];
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

TYPED_TEST(ConfHelper, readsKeysThatArePresent) {
    String text;
    int number = 0;
    Vector<String> list("item");
    list.add("old");
    EXPECT_TRUE(ConfReadHelper::readKey(this->record(), "text", text, required));
    EXPECT_TRUE(ConfReadHelper::readKey(this->record(), "number", number, optional));
    EXPECT_TRUE(ConfReadHelper::readKey(this->record(), "list", list, required));
    EXPECT_EQ(text, "t");
    EXPECT_EQ(number, -3);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[1], "y");
}

TYPED_TEST(ConfHelper, anAbsentKeyKeepsTheDefaultOrIsReported) {
    String text("default");
    for (char const* const key : {"absent", "null"}) {
        test::LogCapture log;
        EXPECT_FALSE(ConfReadHelper::readKey(this->record(), key, text, optional));
        EXPECT_EQ(log.text(), "");
        EXPECT_EQ(text, "default");
        EXPECT_THROW(ConfReadHelper::readKey(this->record(), key, text, required), EConfMissingKey);
        EXPECT_TRUE(log.contains("ERROR ConfReadHelper.readKey Missing tag: <" + std::string(key) + ">"));
    }
}

TYPED_TEST(ConfHelper, anUnreadableRequiredKeyIsReported) {
    test::LogCapture log;
    bool flag = true;
    EXPECT_THROW(ConfReadHelper::readKey(this->record(), "flag", flag, required), EConfMissingKey);
    EXPECT_EQ(log.count("TRACE Exception.catch EKeyReader:"), 1u) << log.text();
    EXPECT_EQ(log.count("ERROR ConfReadHelper.readKey Error while reading key: \"flag\""), 1u) << log.text();
    EXPECT_TRUE(flag);
}

TYPED_TEST(ConfHelper, anUnreadableOptionalKeyIsReportedAndPassedOver) {
    test::LogCapture log;
    bool flag = true;
    EXPECT_FALSE(ConfReadHelper::readKey(this->record(), "flag", flag, optional));
    EXPECT_EQ(log.count("ERROR ConfReadHelper.readKey Error while reading key: \"flag\""), 1u) << log.text();
    EXPECT_TRUE(flag);
}

TYPED_TEST(ConfHelper, placesAreReachedThroughAbsentOnes) {
    ConfReadHelper const top(this->record());
    String text;
    ConfReadHelper const outer = top.get("outer", required);
    EXPECT_TRUE(ConfReadHelper::readKey(outer.reader(), "inner", text, required));
    EXPECT_EQ(text, "i");
    test::LogCapture log;
    EXPECT_TRUE(top.get("absent", optional).get("below", optional).missing());
    EXPECT_EQ(log.text(), "");
    EXPECT_THROW(top.get("absent", optional).get("below", required), EConfMissingKey);
    EXPECT_TRUE(log.contains("ERROR ConfReadHelper.get Missing tag: <below>"));
}

TYPED_TEST(ConfHelper, aListWithoutItemsIsEmptied) {
    Vector<String> list("other");
    list.add("old");
    ConfReadHelper const outer = ConfReadHelper(this->record()).get("outer", required);
    outer.reader().read(static_cast<ISerialize&>(list));
    EXPECT_EQ(list.size(), 0u);
}
