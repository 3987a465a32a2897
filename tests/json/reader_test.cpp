#include "base/serializearray.h"
#include "json/JSONReader.h"

#include <gtest/gtest.h>

using namespace quillon;
using namespace quillon::json;

namespace {

/// A document with its reader.
struct Document {
    explicit Document(std::string_view text)
        : json(String::copyOf(text)), poly(json.getReader()), reader(*poly) {}

    JSONWrapperFromString json;
    JSONPolyReader poly;
    IKeyReader& reader;
};

template <class T>
T value(IKeyReader& reader) {
    T result{};
    reader.read(result);
    return result;
}

template <class T>
T value(std::string_view text) {
    return value<T>(Document(text).reader);
}

} // namespace

TEST(JsonReader, a_conversion_that_fails_is_a_plain_key_reader_error) {
    EXPECT_EQ(value<Memory>("\"by\\u0000tes\""), Memory("by\0tes", 6));
    auto const failure = [](auto read) -> String {
        try {
            read();
            return "none";
        } catch (EJsonKeyReader const&) {
            return "EJsonKeyReader";
        } catch (EKeyReader const& e) {
            return e.toString().range(0, e.toString().rfind(':'));
        }
    };
    EXPECT_EQ(failure([] { value<int>("\"12\""); }), "EKeyReader:JSONReader.cpp");
    EXPECT_EQ(failure([] { value<unsigned>("-1"); }), "EKeyReader:JSONReader.cpp");
    EXPECT_EQ(failure([] { value<bool>("\"true\""); }), "EKeyReader:JSONReader.cpp");
    EXPECT_EQ(failure([] { value<short>("1"); }), "EJsonKeyReader");
    EXPECT_EQ(failure([] { value<String>("{}"); }), "EJsonKeyReader");
    EXPECT_EQ(failure([] { value<int>("[1]"); }), "EJsonKeyReader");
    EXPECT_EQ(failure([] { value<String>("null"); }), "EJsonKeyReader");
    for (char const* const text : {"null", "1", "\"s\""}) {
        Document document(text);
        EXPECT_EQ(failure([&] { document.reader["a"]; }), "EJsonKeyReader") << text;
        EXPECT_FALSE(document.reader.exists("a") || document.reader.hasAttribute("a")) << text;
    }
}

TEST(JsonObjectReader, a_null_member_counts_as_absent) {
    Document document(R"({"a":null,"b":{"c":"d"},"e":false})");
    IKeyReader& reader = document.reader;
    EXPECT_FALSE(reader.exists("a"));
    EXPECT_EQ(reader.size("a"), 0u);
    EXPECT_TRUE(reader.exists("b"));
    EXPECT_EQ(reader.size(String("b")), 1u);
    EXPECT_TRUE(reader.exists("e"));
    EXPECT_FALSE(reader.exists("B"));
    EXPECT_EQ(value<String>(reader["b"]["c"]), "d");
    EXPECT_EQ(value<String>(reader["b"]["c"]), "d");
    EXPECT_THROW(value<String>(reader["a"]), EJsonKeyReader);
    EXPECT_THROW(reader["x"], EJsonKeyReader);
}

TEST(JsonObjectReader, members_keep_their_readers) {
    Document document(R"({"list":[1,2],"other":3})");
    EXPECT_EQ(value<int>(document.reader["list"]["x"]), 1);
    IKeyReader& other = document.reader["other"];
    EXPECT_EQ(value<int>(document.reader["list"]["x"]), 2);
    EXPECT_EQ(value<int>(other), 3);
    EXPECT_THROW(document.reader["list"]["x"], EJsonKeyReader);
    Document array(R"([{"a":"first, long enough for a block of its own"},2])");
    IKeyReader& first = array.reader["x"];
    EXPECT_EQ(value<int>(array.reader["x"]), 2);
    EXPECT_EQ(value<String>(first["a"]), "first, long enough for a block of its own");
}

TEST(JsonArrayReader, gives_its_elements_in_order_whatever_the_key) {
    Document document(R"([1,"two",[3],null])");
    EXPECT_EQ(document.reader.size("any"), 4u);
    EXPECT_EQ(value<int>(document.reader["a"]), 1);
    EXPECT_EQ(value<String>(document.reader[String("b")]), "two");
    EXPECT_EQ(value<int>(document.reader["a"]["x"]), 3);
    EXPECT_THROW(value<String>(document.reader["a"]), EJsonKeyReader);
    EXPECT_THROW(document.reader["a"], EJsonKeyReader);
    EXPECT_EQ(document.reader.size("a"), 4u);
}

TEST(JsonReader, reads_long_lists_and_deep_documents) {
    std::string text = "[0";
    for (unsigned i = 1; i < 100000; ++i)
        text += ",0";
    List<String> list("x");
    Document(text + "]").reader.read(static_cast<ISerialize&>(list));
    EXPECT_EQ(list.size(), 100000u);

    constexpr unsigned deep = 900;
    Document document(std::string(deep, '[') + "7" + std::string(deep, ']'));
    IKeyReader* level = &document.reader;
    for (unsigned i = 0; i < deep; ++i)
        level = &(*level)["x"];
    EXPECT_EQ(value<int>(*level), 7);
}
