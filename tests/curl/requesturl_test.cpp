#include "support/logcapture.h"
#include "trustingsession.h"

#include <gtest/gtest.h>

#include <random>
#include <regex>

using namespace quillon;
using namespace quillon::test;

namespace {

// The host as the expression of RFC 3986, appendix B, finds it; empty when there is none.
std::string hostIn(std::string const& url) {
    static std::regex const expression(R"(^(([^:/?#]+):)?(//([^/?#]*))?[\s\S]*)");
    std::smatch match;
    std::regex_match(url, match, expression);
    std::string authority = match[4];
    authority.erase(0, authority.rfind('@') + 1); // npos + 1 is 0
    std::size_t const port =
        authority.find(':', authority.find(']') == std::string::npos ? 0 : authority.find(']'));
    return authority.substr(0, port);
}

std::string randomUrl(std::mt19937& random) {
    static std::string const texts =
        "gate.example|other.example|127.0.0.1|0x7f.1|2130706433|[::1]|[0:0::1]|GATE|xn--gte-qla|"
        "g\xc3\xa4te|%67ate|%2f|%00|%40|@|@@|:|:80|:0080|:99999|/|//|\\|?|#|\t| |\r\n|\x01|\x7f|.|..|"
        "user|user:pw@|[|]|http://|\xe3\x80\x82|;|a=b&c";
    static std::regex const bar("\\|");
    static std::vector<std::string> const pieces(
        std::sregex_token_iterator(texts.begin(), texts.end(), bar, -1), {});
    std::string url;
    static std::string const starts[] = {"http://", "http://", "http://", "http://", "http:/", "http:///",
                                         "http:",   "HTTP://", "",        "//",      "ftp://", "http:////"};
    url += starts[random() % std::size(starts)];
    for (auto count = random() % 6; count > 0; --count)
        url += pieces[random() % std::size(pieces)];
    return url;
}

} // namespace

// Who is asked, as a proxy sees it, is who stands in the URL, or nobody.
TEST(RequestUrl, only_the_host_that_can_be_read_there_is_asked) {
    LogCapture log; // of most
    TestServer proxy(answering(ok()), Tls::off);
    ProxySession session(Proxy(Proxy::HTTP_CONNECT, String::copyOf(proxy.authority())));
    std::mt19937 random(20261121);
    unsigned asked = 0;
    for (int i = 0; i < 20000; ++i) {
        std::string const url = randomUrl(random);
        Memory body;
        if (!session.request(String::copyOf(url), body))
            continue;
        ++asked;
        std::string const target = proxy.lastRequest().target;
        EXPECT_EQ(String::copyOf(hostIn(target)).lower(), String::copyOf(hostIn(url)).lower()) << url;
        EXPECT_NE(hostIn(url), "") << url;
    }
    EXPECT_GT(asked, 500u);
}

TEST(RequestUrl, reads_the_parts) {
    RequestUrl const url("HTTPS://u:p@Gate.Example:8443/a/../b%2f?q#f");
    EXPECT_EQ(url.getError(), 0);
    EXPECT_EQ(url.getHost(), "gate.example");
    EXPECT_EQ(url.getPath(), "/b%2f");
    EXPECT_TRUE(url.isHttps());
    EXPECT_EQ(RequestUrl("http://[::1]:80").getHost(), "::1");
    EXPECT_EQ(RequestUrl("http://[::1]:80").getPath(), "/");
    for (char const* const refused :
         {"http:/h/", "http:///h/", "http://t@/h/", "http://:80/", "http:h", "h", ""})
        EXPECT_NE(RequestUrl(refused).getError(), 0) << refused;
}
