#include "cookiecomparison.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

using namespace quillon::test;

// TARVIK_COOKIE_ROUNDS asks for more rounds than a test's time allows.
TEST(CookieComparison, sent_and_held_as_by_libcurl_alone) {
    char const* const asked = std::getenv("TARVIK_COOKIE_ROUNDS");
    int const rounds = asked ? std::atoi(asked) : 40;
    std::mt19937 random(20261121);
    for (int i = 0; i < rounds; ++i) {
        std::string bytes(400, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        ASSERT_EQ(compareCookies(bytes), "") << "round " << i;
    }
}

// Lengths and numbers that random replies do not come to.
TEST(CookieComparison, long_tickets_and_many_cookies) {
    std::string const gate = "http://gate.example/";
    std::string const ticket = "Tarvik-Id=" + std::string(4000, 't');
    std::vector<std::string> many;
    for (int i = 0; i < 160; ++i)
        many.push_back("c" + std::to_string(i) + "=" + std::string(10, 'v'));
    std::pair<std::string, std::vector<std::string>> const steps[] = {
        {gate, {ticket}},
        {"http://other.example/", {"Tarvik-Id=; Max-Age=0"}},
        {gate, {"Tarvik-Id=x; path=/a; domain=other.example", "tarvik-id=; Max-Age=0"}},
        {gate, {"Tarvik-Id=; Max-Age=0", ticket + "; path=/b"}},
        {gate + "b", {"Tarvik-Id=" + std::string(4097, 'x')}},
        {gate + "b", {}},
        {"http://127.0.0.1/", {many.begin(), many.begin() + 40}},
        {"http://127.0.0.1/", {many.begin() + 40, many.begin() + 80}},
        {"http://127.0.0.1/", {many.begin() + 80, many.begin() + 120}},
        {"http://127.0.0.1/", {many.begin() + 120, many.end()}},
        {"http://127.0.0.1/", {}},
    };
    CookieComparison comparison;
    for (auto const& [url, cookies] : steps)
        EXPECT_EQ(comparison.request(url, cookies), "") << url;
}
