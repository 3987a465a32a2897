#include "base/dict.h"
#include "base/serializearray.h"
#include "base/stringwriter.h"
#include "xml/parserreader.h"
#include "xml/writerkeywriter.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace quillon;

namespace {

template <class Container>
void expectKeyedForm() {
    auto document = xml::ParserReader::fromText("<r><item>a</item><other/><item>b</item></r>");
    IKeyReader& reader = document["r"];
    Container items("item");
    items.add("old");
    items.write(reader);
    ASSERT_EQ(items.size(), 2u);
    EXPECT_TRUE(std::equal(items.begin(), items.end(), std::initializer_list<String>{"a", "b"}.begin()));
    String text;
    StringWriter target(text);
    {
        xml::WriterKeyWriter writer(target);
        items.read(writer["r"]);
    }
    EXPECT_EQ(text, "<r>\r\n <item>a</item>\r\n <item>b</item>\r\n</r>");
    items.write(reader);
    EXPECT_EQ(items.size(), 0u) << "each has been read once";
}

} // namespace

TEST(Containers, stand_in_documents_as_one_child_for_each_item) {
    expectKeyedForm<SerializeArray<String>>();
    expectKeyedForm<SerializeArray<String, InternalMutex>>();
    expectKeyedForm<List<String>>();
    expectKeyedForm<Vector<String>>();
}

TEST(Dict, keeps_one_value_for_each_key_in_order) {
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
