#include "base/confhelper.h"
#include "base/dict.h"
#include "base/serializearray.h"
#include "base/stringwriter.h"
#include "fakedocument.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace quillon;

namespace {

struct Record : IConf {
    using IConf::write;
    void write(IKeyReader& reader) override {
        ConfReadHelper::readKey(reader, "number", number, ConfReadHelper::required);
    }
    int number = 0;
};

test::Node document() {
    return {"",
            "",
            {{"item", "a"},
             {"number", "12"},
             {"item", "b"},
             {"bad", "x"},
             {"record", "", {{"number", "7"}}},
             {"empty", "", {{"other"}}}}};
}

template <class Container>
void expectKeyedForm() {
    Container items("item");
    items.add("old");
    test::Node const source = document();
    test::NodeReader reader(source);
    items.write(static_cast<IKeyReader&>(reader));
    ASSERT_EQ(items.size(), 2u);
    EXPECT_TRUE(std::equal(items.begin(), items.end(), std::initializer_list<String>{"a", "b"}.begin()));
    test::Node target;
    test::NodeWriter writer(target);
    items.read(static_cast<IKeyWriter&>(writer));
    EXPECT_EQ(target.text(), "item=a;item=b;");
    test::Node const nothing;
    test::NodeReader empty(nothing);
    items.write(static_cast<IKeyReader&>(empty));
    EXPECT_EQ(items.size(), 0u);
}

} // namespace

TEST(Containers, standInDocumentsAsOneChildForEachItem) {
    expectKeyedForm<SerializeArray<String>>();
    expectKeyedForm<SerializeArray<String, InternalMutex>>();
    expectKeyedForm<List<String>>();
    expectKeyedForm<Vector<String>>();
}

TEST(Dict, keepsOneValueForEachKeyInOrder) {
    Dict<String, int> dict;
    for (char const* key : {"b", "a", "c", "a"})
        dict.set(key, static_cast<int>(dict.size()));
    EXPECT_EQ(dict.size(), 3u);
    EXPECT_EQ(dict.find("a")->value, 3);
    EXPECT_EQ(dict.find("aa"), dict.end());
    EXPECT_TRUE(dict.remove("a"));
    EXPECT_FALSE(dict.remove("a"));
    EXPECT_EQ(dict.begin()->key, "b");
}

TEST(ConfReadHelper, keysAreRequiredOrOptional) {
    static constexpr char const* missing = "ERROR ConfReadHelper.readKey Missing tag: <none>\n";
    static constexpr char const* unreadable =
        "ERROR ConfReadHelper.readKey Error while reading key: \"bad\"\n";
    static constexpr struct {
        char const* key;
        unsigned flags;
        bool isRead, throws;
        char const* logged;
    } cases[] = {
        {"number", ConfReadHelper::required, true, false, ""},
        {"none", ConfReadHelper::optional, false, false, ""},
        {"none", ConfReadHelper::required, false, true, missing},
        {"bad", ConfReadHelper::optional, false, false, unreadable},
        {"bad", ConfReadHelper::required, false, true, unreadable},
    };
    test::Node const source = document();
    for (auto const& c : cases) {
        test::LogCapture log;
        test::NodeReader reader(source);
        int value = -1;
        try {
            EXPECT_EQ(ConfReadHelper::readKey(reader, c.key, value, c.flags), c.isRead) << c.key;
            EXPECT_FALSE(c.throws) << c.key;
        } catch (EConfMissingKey const& e) {
            EXPECT_TRUE(c.throws) << c.key;
            EXPECT_TRUE(e.toString().starts("EConfMissingKey:confhelper.cpp:"));
        }
        EXPECT_EQ(value, c.isRead ? 12 : -1);
        EXPECT_TRUE(log.contains(c.logged)) << log.text();
        EXPECT_EQ(log.text().empty(), *c.logged == '\0') << log.text();
        EXPECT_EQ(log.contains("TRACE Exception.catch EKeyReader:fakedocument.h:"), c.logged == unreadable);
    }
}

TEST(ConfReadHelper, absentBranchesStayQuiet) {
    test::LogCapture log;
    test::Node const source = document();
    test::NodeReader reader(source);
    ConfReadHelper const root(reader);
    EXPECT_FALSE(
        root.get("record", ConfReadHelper::required).get("number", ConfReadHelper::required).missing());
    EXPECT_TRUE(root.get("none", ConfReadHelper::optional).get("below", ConfReadHelper::optional).missing());
    EXPECT_EQ(log.text(), "");
    EXPECT_THROW(root.get("none", ConfReadHelper::optional).get("below", ConfReadHelper::required),
                 EConfMissingKey);
    EXPECT_TRUE(log.contains("ERROR ConfReadHelper.get Missing tag: <below>\n"));
}

TEST(ConfReadHelper, recordsFillThemselves) {
    test::LogCapture log;
    test::Node const source = document();
    test::NodeReader reader(source);
    Record record;
    EXPECT_TRUE(ConfReadHelper::readKey(reader, "record", record, ConfReadHelper::required));
    EXPECT_EQ(record.number, 7);
    EXPECT_THROW(ConfReadHelper::readKey(reader, "empty", record, ConfReadHelper::optional), EConfMissingKey)
        << "what a record requires is required of an optional record too";
    String text;
    StringWriter writer(text);
    EXPECT_THROW(record.read(static_cast<IWriter&>(writer)), ENotImplemented);
    EXPECT_THROW(writer.write(Memory("bytes", 5), 6), EStringWriter);
}
