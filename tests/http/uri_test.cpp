#include "http/uri.h"

#include "base/stringconversion.h"
#include "http/loggableuri.h"
#include "support/logcapture.h"

#include <gtest/gtest.h>

using namespace quillon;
using http::Uri;

namespace {

std::string text(String const& string) {
    return std::string(string.view());
}

std::string reassembled(char const* url) {
    return text(Uri::parse(url, true).getFullUri());
}

} // namespace

TEST(Uri, parse_finds_the_components) {
    static constexpr char const* cases[][6] = {{"tarvik://user:x@gate.example:8443/a/b?k=v&lang=fr#top",
                                                "tarvik", "user:x@gate.example:8443", "/a/b", "k=v&lang=fr",
                                                "top"},
                                               {"/only/a/path", "", "", "/only/a/path", "", ""},
                                               {"", "", "", "", "", ""},
                                               {"tarvik:", "tarvik", "", "", "", ""},
                                               {":8080/x", "", "", ":8080/x", "", ""},
                                               {"//host?q", "", "host", "", "q=", ""},
                                               {"a/b:c", "", "", "a/b:c", "", ""},
                                               {"s:p#f?not=query#more", "s", "", "p", "", "f?not=query#more"},
                                               {"http://h?a=1/2//3", "http", "h", "", "a=1%2F2%2F%2F3", ""}};
    for (auto const& [url, scheme, authority, path, query, fragment] : cases) {
        SCOPED_TRACE(url);
        Uri const uri = Uri::parse(url, true);
        EXPECT_EQ(uri.getScheme(), scheme);
        EXPECT_EQ(uri.getAuthority(), authority);
        EXPECT_EQ(uri.getPath(), path);
        EXPECT_EQ(uri.getQuery(), query);
        EXPECT_EQ(uri.getFragment(), fragment);
    }
}

TEST(Uri, path_and_fragment_go_out_as_they_came) {
    static constexpr char const* cases[][2] = {
        {"http://h/a%20b", "http://h/a%20b"},
        {"http://h/a%2Fb", "http://h/a%2Fb"},
        {"http://h/a%2fb", "http://h/a%2fb"},
        {"http://h/a b", "http://h/a%20b"},
        {"http://h/100%", "http://h/100%25"},
        {"http://h/%zz%4", "http://h/%25zz%254"},
        {"http://h/\r\nX: y", "http://h/%0D%0AX:%20y"},
        {"http://h/caf\xC3\xA9/~a;b,c=d", "http://h/caf%C3%A9/~a;b,c=d"},
        {"http://h/#a%20b?c d", "http://h/#a%20b?c%20d"}};
    for (auto const& [url, expected] : cases) {
        EXPECT_EQ(reassembled(url), expected);
        EXPECT_EQ(text(Uri::parse(url, false).getFullUri()), expected);
    }
}

TEST(Uri, path_never_runs_into_the_authority) {
    Uri uri = Uri::parse("tarvik:.attacker.example/x", true);
    uri.setAuthority("gate.example");
    EXPECT_EQ(uri.getFullUri(), "tarvik://gate.example/.attacker.example/x");
}

TEST(Uri, query_is_split_decoded_and_sorted_by_name) {
    Uri uri = Uri::parse("http://h/?b=2&a=x%20y&flag&b=3&e=1=2&%6E=%zz", true);
    EXPECT_EQ(uri.getParameter("b"), "3");
    EXPECT_EQ(uri.getParameter("a"), "x y");
    EXPECT_EQ(uri.getParameter("missing"), "");
    EXPECT_EQ(uri.getQuery(), "a=x%20y&b=3&e=1%3D2&flag=&n=%25zz");
    uri.delParameter("b");
    EXPECT_EQ(uri.getParameters().count("b"), 0u);
    EXPECT_EQ(Uri::parse("http://h/?a=x%20y", false).getParameter("a"), "x%20y");
}

TEST(Uri, encoding_leaves_only_the_unreserved) {
    EXPECT_EQ(Uri::encode("AZaz09-._~"), "AZaz09-._~");
    EXPECT_EQ(Uri::encode(String(" %+&=/\0\xFF", 8)), "%20%25%2B%26%3D%2F%00%FF");
    EXPECT_EQ(Uri::decode("%41%4a+%"), "AJ+%");
    EXPECT_EQ(Uri::decode("%%41%2"), "%A%2");
}

TEST(Uri, setters_refuse_delimiters) {
    test::LogCapture log;
    Uri uri = Uri::parse("http://h/p", true);
    EXPECT_THROW(uri.setScheme("ht:tp"), http::UriComponentException);
    EXPECT_THROW(uri.setAuthority("host/x"), http::UriComponentException);
    EXPECT_THROW(uri.setPath("/a?b"), http::UriComponentException);
    EXPECT_EQ(log.count("Invalid "), 3u) << log.text();
    EXPECT_EQ(uri.getFullUri(), "http://h/p");
}

TEST(Uri, line_break_in_the_fragment_is_no_uri) {
    test::LogCapture log;
    EXPECT_THROW(Uri::parse("http://h/#a\nb", true), http::UriComponentException);
    EXPECT_TRUE(log.contains("ERROR Uri.setScheme Invalid uri: http://h/#a"));
    EXPECT_ANY_THROW(Uri::parse("tarvik://ticket@h/?lang=fr&k=value#\n", true));
    EXPECT_ANY_THROW(Uri().setAuthority("name:password@h/"));
    EXPECT_TRUE(log.contains("Invalid uri: tarvik://...@h/?lang=...&k=...#"));
    EXPECT_TRUE(log.contains("Invalid authority: ...@h/"));
    EXPECT_NO_THROW(Uri::parse("http://h/a\nb?c\nd", true));
}

TEST(Uri, what_may_be_secret_is_not_logged) {
    static constexpr char const* cases[][2] = {
        {"https://gate.example:8443/a/b#c", "https://gate.example:8443/a/b#c"},
        {"/modules/m.zip", "/modules/m.zip"},
        {"tarvik://ticket@h:1/p?lang=fr&x=&token", "tarvik://...@h:1/p?lang=...&x=...&..."},
        {"tarvik://tic/ket@x@h/", "tarvik://...@h/"},
        {"tarvik://tic#ket@h/", "tarvik://...@h/"},
        {"tarvik:ticket@h/", "...@h/"},
        {"name:password@h/p?a=b", "...@h/p?a=..."},
        {"//name@h?mail=a@b#f?g", "...@h?mail=...#f?g"},
        {"h?", "h?..."},
        {"", ""}};
    for (auto const& [uri, expected] : cases)
        EXPECT_EQ(text(http::loggableUri(uri)), expected) << uri;
}

// Twelve megabytes: anything but linear work runs into the test's time limit.
TEST(Uri, huge_urls_are_linear) {
    String url("http://h/" + String(std::string(1 << 20, '%').c_str()) + "?");
    constexpr unsigned parameters = 500000;
    for (unsigned i = 0; i < parameters; ++i)
        url.append("%70", toString(i), "=%20v&");
    Uri const uri = Uri::parse(url, true);
    EXPECT_EQ(uri.getParameters().size(), parameters + 1); // and the empty one behind the last "&"
    EXPECT_EQ(uri.getParameter("p499999"), " v");
    EXPECT_GT(uri.getFullUri().length(), 3u << 20);
}
