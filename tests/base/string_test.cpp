#include "base/string.h"

#include "base/memory.h"
#include "base/searchpattern.h"
#include "base/splitter.h"
#include "base/stringconversion.h"
#include "base/strings.h"
#include "base/stringwriter.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <random>
#include <thread>
#include <vector>

using namespace quillon;

TEST(String, pieces_around_a_character) {
    static constexpr struct {
        char const *text, *left, *leftOrNull, *right, *rightOrNull, *rleft, *rright;
    } cases[] = {
        {"abc", "abc", "", "abc", "", "abc", "abc"},
        {"a;b", "a", "a", "b", "b", "a", "b"},
        {"a;b;c", "a", "a", "b;c", "b;c", "a;b", "c"},
        {";", "", "", "", "", "", ""},
        {"", "", "", "", "", "", ""},
    };
    for (auto const& c : cases) {
        String const text(c.text);
        EXPECT_EQ(text.left(';', false), c.left) << c.text;
        EXPECT_EQ(text.left(';', true), c.leftOrNull) << c.text;
        EXPECT_EQ(text.right(';', false), c.right) << c.text;
        EXPECT_EQ(text.right(';', true), c.rightOrNull) << c.text;
        EXPECT_EQ(text.rleft(';'), c.rleft) << c.text;
        EXPECT_EQ(text.rright(';'), c.rright) << c.text;
    }
}

TEST(String, ranges_and_trims_stay_within_the_string) {
    String const text = String::copyOf("hello");
    EXPECT_STREQ(text.range(1, 2).str(), "el");
    EXPECT_STREQ(text.str(), "hello");
    EXPECT_EQ(text.range(1, 2).array(), text.array() + 1) << "pieces share the bytes";
    EXPECT_TRUE(text.range(5).empty() && text.range(String::npos, 1).empty());
    EXPECT_EQ(text.replaceBetween(9, 3, "!"), "hello!");
    EXPECT_EQ(String("\0 \t a b\r\n\0", 9).trim(), "a b");
    EXPECT_TRUE(String(" \t\r\n").trim().empty() && String().trim().empty());
    EXPECT_EQ(String("--a-b--").trim('-'), "a-b");
    EXPECT_TRUE(String("---").trim('-').empty());
}

TEST(String, search_finds_positions_from_the_start) {
    constexpr unsigned npos = String::npos;
    String const text("abcABCabc");
    SearchPattern const exact("abc"), ignored("ABC", SearchPattern::Case::ignored);
    unsigned const cases[][2] = {
        {text.find('c', 3), 8},
        {text.find('a', 9), npos},
        {text.find('a', npos), npos},
        {text.find("abc", 1), 6},
        {text.find("abc", 3, 1, 8), npos},
        {text.find("abc", 3, 1, 9), 6},
        {text.find("", 9), 9},
        {text.find("", 10), npos},
        {text.findNoCase2("bcA", 0), 1},
        {text.findNoCase2('C', 3), 5},
        {text.rfind('a'), 6},
        {text.rfind('a', 5), 0},
        {text.rfind('b', 0), npos},
        {text.rfind("abc"), 6},
        {text.findFirstOf("CB", 0), 4},
        {text.findFirstOf("CB", 0, 4), npos},
        {text.search(&exact, 1), 6},
        {text.searchNoCase2(&ignored, 1), 3},
        {text.searchNoCase2(&ignored, 7), npos},
        {String().rfind('a'), npos},
        {String("ab c").searchSpace(), 2},
        {String("ab c").searchSpace(0, 2), npos},
        {String("  c").searchNoSpace(), 2},
    };
    for (auto const& [found, expected] : cases)
        EXPECT_EQ(found, expected) << "case " << (&found - cases[0]) / 2;
}

TEST(String, comparison_is_byte_for_byte) {
    EXPECT_TRUE(String("abc").starts("bc", 1) && !String("abc").starts("bc", 2));
    EXPECT_TRUE(String("abc").starts("", 3) && !String("abc").starts("", 4));
    EXPECT_TRUE(String("abc").startsNoCase2("", 3) && !String("abc").startsNoCase2("", 4));
    EXPECT_TRUE(String("abc").ends('c') && !String("abc").ends("bc", 2));
    EXPECT_TRUE(String("abc").startsNoCase2("BC", 1) && !String("abc").startsNoCase2("ABCD"));
    EXPECT_TRUE(String("abc").endsNoCase2("BC") && !String("abc").endsNoCase2("BC", 2));
    EXPECT_TRUE(String("a[").equalsNoCase2("A[") && !String("[").equalsNoCase2("{")) << "only letters";
    EXPECT_FALSE(String("\xC9").equalsNoCase2("\xE9"));
    EXPECT_TRUE(String("a\0b", 3) != "a");
    EXPECT_TRUE(String("z") < String("\x80") && String("ab") > String("a"));
}

TEST(String, new_strings_leave_the_old_one_alone) {
    String const text("aXbXxc"), upper = text.upper();
    EXPECT_EQ(upper, "AXBXXC");
    EXPECT_EQ(upper.upper().array(), upper.array()) << "nothing to change, nothing copied";
    EXPECT_EQ(text.replace("X", "XX"), "aXXbXXxc");
    EXPECT_EQ(text.replaceNoCase2("x", ""), "abc");
    EXPECT_EQ(String("aaa").replace("aa", "b"), "ba");
    EXPECT_EQ(text.remove('X'), "abxc");
    EXPECT_EQ(String("b\xFF!").sort(), "!b\xFF");
    EXPECT_EQ(String(",").glue({"a", "b", "c"}), "a,b,c");
    EXPECT_TRUE(String(",").glue({}).empty());
    EXPECT_EQ(text, "aXbXxc");
}

TEST(String, wrapped_bytes_are_never_read_beyond_their_end) {
    auto const bytes = std::make_unique<char[]>(3); // no NUL behind: a memory checker sees each step too far
    std::memcpy(bytes.get(), "abc", 3);
    String const wrapped(bytes.get(), 3);
    EXPECT_EQ(wrapped.array(), bytes.get());
    EXPECT_STREQ(wrapped.str(), "abc");
    for (String copy : {String(bytes.get(), 3).range(1), String(bytes.get(), 3).owned()}) {
        std::size_t const length = copy.length();
        EXPECT_EQ(std::strlen(copy.str()), length);
        EXPECT_EQ(std::strlen(copy.append('d').str()), length + 1);
    }
    String const piece = String::copyOf(std::string(64, 'x')).range(60); // up to the last byte of its block
    EXPECT_STREQ(piece.str(), "xxxx");
    EXPECT_STREQ(String("literal").range(0, 3).str(), "lit");
    EXPECT_STREQ(String('\xFF').str(), "\xFF");
    EXPECT_STREQ(String("", 0).str(), "");
    String text;
    EXPECT_THROW(StringWriter(text).write(Memory("bytes", 5), 6), EStringWriter);
}

TEST(String, keeps_bytes_of_passing_buffers_when_asked) {
    char buffer[] = "text";
    String const wrapped(buffer);
    String appended;
    String const kept[] = {wrapped.clone(), wrapped.owned(), appended.append(buffer),
                           String(Memory(buffer, 4))};
    buffer[0] = 'n';
    EXPECT_EQ(wrapped, "next");
    for (String const& s : kept)
        EXPECT_EQ(s, "text");
}

TEST(String, grows_at_linear_cost) {
    String s;
    unsigned moves = 0;
    for (unsigned i = 0; i < 4u << 20; ++i) {
        char const* const before = s.array();
        s.append('x');
        moves += s.array() != before;
    }
    EXPECT_EQ(s.length(), 4u << 20);
    EXPECT_LT(moves, 300u);
}

// Several strings that share blocks behave as so many separate std::string objects.
TEST(String, sharing_is_not_observable) {
    std::mt19937 random(1);
    auto const below = [&](std::size_t n) { return static_cast<unsigned>(n ? random() % n : 0); };
    constexpr unsigned count = 4;
    String strings[count];
    std::string models[count];
    for (int step = 0; step < 20000; ++step) {
        unsigned const i = below(count), j = below(count);
        String& s = strings[i];
        std::string& m = models[i];
        unsigned const at = below(m.size());
        char const c = static_cast<char>('a' + step % 26);
        std::function<void()> const changes[] = {
            [&] { s = strings[j], m = std::string(models[j]); },
            [&] { s.append(c), m += c; },
            [&] { s.append(strings[j]), m += std::string(models[j]); },
            [&] {
                s = strings[j].range(at), m = models[j].substr(std::min<std::size_t>(at, models[j].size()));
            },
            [&] { s.cut(at), m.resize(at); },
            [&] { s.resize(at), m.resize(at); },
            [&] { m.empty() ? void() : (s.setAt(at, c), m[at] = c, void()); },
            [&] { s.append(at, c), m.append(at, c); },
            [&] { s = s.range(0, at) + strings[j] + c, m = m.substr(0, at) + models[j] + c; },
            [&] { std::memset(s.reserve(100), c, 100); }, // beyond the length
            [&] { s.append(s.array() + at, s.length() - at), m += m.substr(at); },
            [&] { ASSERT_STREQ(s.str(), m.c_str()); },
        };
        changes[below(std::size(changes))]();
        if (m.size() > 20000)
            s.clear(), m.clear();
        for (unsigned k = 0; k < count; ++k)
            ASSERT_EQ(strings[k].view(), models[k]) << "step " << step;
    }
}

TEST(Splitter, yields_one_piece_more_than_separators) {
    static constexpr struct {
        char const* text;
        std::initializer_list<char const*> pieces;
    } cases[] = {
        {"a;b,c", {"a", "b", "c"}}, {"", {""}}, {";", {"", ""}}, {"a,", {"a", ""}}, {",;a", {"", "", "a"}}};
    for (auto const& c : cases) {
        FirstOfSplitter splitter(c.text, ";,");
        EXPECT_EQ(splitter.length(), c.pieces.size()) << c.text;
        for (int round = 0; round < 2; ++round, splitter.rewind()) {
            for (char const* piece : c.pieces) {
                EXPECT_TRUE(splitter.valid());
                EXPECT_EQ(splitter.next(), piece) << c.text;
            }
            EXPECT_FALSE(splitter.valid());
            EXPECT_TRUE(splitter.next().empty());
        }
    }
    CharSplitter one("a;b,c", ';');
    EXPECT_EQ(one.next(), "a");
    EXPECT_EQ(one.next(), "b,c");
}

TEST(StringAddition, puts_any_number_of_parts_together) {
    StringAddition addition;
    std::string expected;
    for (unsigned i = 0; i < 40; ++i) {
        EXPECT_EQ(String(addition).view(), expected) << i << " parts";
        EXPECT_EQ(addition.length(), expected.size());
        addition = addition + toString(i) + ',';
        expected += std::to_string(i) + ',';
    }
    String target("head ");
    EXPECT_EQ(target.append(addition).view(), "head " + expected);
    target = String::copyOf("ab");
    target = target + "" + target + String() + 'c' + target.range(1);
    EXPECT_EQ(target, "ababcb") << "the target may be a part";
}

TEST(StringAddition, long_chains_are_taken_apart_without_recursion) {
    StringAddition addition;
    for (unsigned i = 0; i < 1000000; ++i)
        addition.add("x");
    StringAddition const copy = addition;
    addition = StringAddition();
    EXPECT_EQ(copy.toString().length(), 1000000u);
}

TEST(String, is_shared_among_threads) {
    String const shared = String::copyOf(std::string(100, 's'));
    std::vector<std::thread> threads;
    std::atomic<int> wrong{0};
    for (char c = 'a'; c < 'e'; ++c)
        threads.emplace_back([&shared, &wrong, c] {
            std::string expected(100, 's');
            expected += c;
            for (int i = 0; i < 20000; ++i) {
                String mine = shared;
                String const piece = mine.range(10, 20);
                mine.append(c);
                wrong +=
                    mine.view() != expected || piece.view() != expected.substr(10, 20) || *mine.str() != 's';
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(shared.view(), std::string(100, 's'));
}
