#include "base/strings.h"
#include "json/JSONWrapper.h"
#include "support/logcapture.h"
#include "support/repeated.h"

#include <gtest/gtest.h>

using namespace quillon;
using namespace quillon::json;
using test::repeated;

namespace {

JSONWrapperFromString parsed(std::string_view text) {
    return JSONWrapperFromString(String::copyOf(text));
}

} // namespace

TEST(JsonWrapper, takes_comments_and_what_stands_behind_the_value) {
    EXPECT_EQ(parsed("18446744073709551615").getType(), JSON::uintValue);
    EXPECT_EQ(parsed("// c\n1 /* d */").getType(), JSON::intValue);
    EXPECT_EQ(parsed("[1] behind").getType(), JSON::arrayValue);
}

TEST(JsonWrapper, refuses_what_is_no_json) {
    for (char const* const text : {"", "  ", "{", "[1", "[1,]", "{\"a\":1,}", "{a:1}", "{\"a\"}", "\"open",
                                   "'s'", "nul", "[1 2]", "\"\\x\"", "NaN", "\xEF\xBB\xBF[]", "<html>"}) {
        test::LogCapture log;
        EXPECT_THROW(JSONWrapperFromString{text}, EJsonError) << text;
        EXPECT_EQ(log.lines().size(), 1u) << log.text();
        EXPECT_TRUE(log.contains("ERROR JSONWrapperFromString.JSONWrapperFromString unable to parse json !"));
    }
}

TEST(JsonWrapper, strings_keep_their_bytes) {
    using namespace std::string_view_literals;
    EXPECT_EQ(parsed(R"("a\u0000b")").asString().view(), "a\0b"sv);
    EXPECT_EQ(parsed(R"("\u20ac\ud83d\ude00\n")").asString().view(), "\xE2\x82\xAC\xF0\x9F\x98\x80\n");
    EXPECT_EQ(parsed("\"\xFF\xC3\"").asString().view(), "\xFF\xC3");
}

TEST(JsonWrapper, converts_scalars_and_refuses_the_rest) {
    EXPECT_EQ(parsed("12").asString(), "12");
    EXPECT_EQ(parsed("true").asString(), "true");
    EXPECT_EQ(parsed("2.0").asInt(), 2);
    EXPECT_EQ(parsed("4294967295").asUInt(), 4294967295u);
    EXPECT_TRUE(parsed("1").asBool());
    test::LogCapture log;
    for (char const* const text : {"\"12\"", "2147483648", "1e300"})
        EXPECT_THROW(parsed(text).asInt(), EJsonError) << text;
    EXPECT_THROW(parsed("-1").asUInt(), EJsonError);
    EXPECT_THROW(parsed("\"true\"").asBool(), EJsonError);
    EXPECT_THROW(parsed("[]").asString(), EJsonError);
    EXPECT_THROW(parsed("{}").asUInt(), EJsonError);
    EXPECT_EQ(log.count("ERROR JSONWrapper.as"), 7u);
}

TEST(JsonWrapper, reaches_members_by_name) {
    using namespace std::string_view_literals;
    auto const object = parsed(R"({"b":1,"a":{"c":[true]},"":2,"n\u0000l":3,"é":4,"b":5})");
    EXPECT_EQ(object["b"].asInt(), 5); // the last one counts
    EXPECT_EQ(object[""].asInt(), 2);
    EXPECT_EQ(object[String::copyOf("n\0l"sv)].asInt(), 3);
    EXPECT_EQ(object.operator[]<String>("é").asInt(), 4);
    EXPECT_EQ(object["a"]["c"].getType(), JSON::arrayValue);
    EXPECT_EQ(object["absent"]["of absent"].getType(), JSON::nullValue);
    EXPECT_THROW(object["b"]["of a number"], EJsonError);
    EXPECT_THROW(parsed("[]")["of an array"], EJsonError);

    Strings const names = object.getMemberNames();
    ASSERT_EQ(names.size(), 5u);
    EXPECT_EQ(names[1], "a");
    EXPECT_EQ(parsed("null").getMemberNames().size(), 0u);
    EXPECT_THROW(parsed("[]").getMemberNames(), EJsonError);
}

TEST(JsonWrapper, is_iterated) {
    String all;
    for (JSONWrapper const element : parsed("[1,[2],\"3\"]"))
        all.append(element.getType() == JSON::arrayValue ? String("-") : element.asString());
    EXPECT_EQ(all, "1-3");
    auto const object = parsed(R"({"b":1,"a":2})");
    auto it = object.begin();
    EXPECT_EQ(it.name(), "a");
    EXPECT_EQ((*it++).asInt(), 2);
    EXPECT_EQ(it.name(), "b");
    EXPECT_EQ(++it, object.end());
    for (char const* const empty : {"null", "[]", "{}", "1", "\"text\""}) {
        auto const json = parsed(empty);
        EXPECT_EQ(json.begin(), json.end()) << empty;
    }
}

TEST(JsonWrapper, hostile_texts_end_quickly) {
    constexpr unsigned many = 100000;
    EXPECT_THROW(parsed(repeated("[", many)), EJsonError);
    EXPECT_THROW(parsed(repeated("[", many) + repeated("]", many)), EJsonError);
    EXPECT_THROW(parsed(repeated("{\"a\":", many)), EJsonError);
    EXPECT_NO_THROW(parsed(repeated("[", 900) + repeated("]", 900)));
    EXPECT_THROW(parsed("\"" + repeated("\\\"", many)), EJsonError);
    // Comments far behind the value that they belong to: jsoncpp would search the blanks for each of them.
    EXPECT_NO_THROW(parsed("[1" + std::string(10 * many, ' ') + "\n" + repeated("//\n", 5 * many) + "]"));
    EXPECT_THROW(parsed("[1" + repeated("/*", many)), EJsonError);
    for (char const* const value : {"1,", "[],", "{\"a\":{}},", "\"\","}) // many small values
        for (char const* const before : {"[", "/*\"*/["})
            EXPECT_THROW(parsed(before + repeated(value, many) + "1]"), EJsonError) << value;
    EXPECT_NO_THROW(parsed("[" + repeated("1,", many - 2) + "1]"));
}
