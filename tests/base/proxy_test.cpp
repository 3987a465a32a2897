#include "base/proxy.h"

#include "fakedocument.h"

#include <gtest/gtest.h>

using namespace quillon;

TEST(Credentials, domainLoginsAreTakenApart) {
    static constexpr struct {
        char const *text, *login, *domain;
    } cases[] = {
        {"domain\\login", "login", "domain"},
        {"login@domain", "login", "domain"},
        {"login", "login", "before"},
        {"d\\l@x", "l@x", "d"},
        {"d\\l\\x", "l\\x", "d"},
        {"l@d@x", "l", "d@x"},
        {"\\login", "login", ""},
        {"", "", "before"},
    };
    for (auto const& c : cases) {
        Credentials credentials("", "secret", "before");
        credentials.setDomainLogin(c.text);
        EXPECT_EQ(credentials, Credentials(c.login, "secret", c.domain)) << c.text;
    }
    Credentials credentials("login@domain", "", "");
    credentials.setDomainLogin(credentials.getLogin());
    EXPECT_EQ(credentials, Credentials("login", "", "domain"));
}

TEST(Credentials, areShownWithTheDomainThatThereIs) {
    Credentials const with("login", "pw", "domain"), without("login", "pw", "");
    EXPECT_EQ(with.getDomainLogin(true), "login@domain");
    EXPECT_EQ(without.getDomainLogin(true), "login");
    EXPECT_EQ(with.toString(), "domain\\login:pw");
    EXPECT_EQ(without.toString(), "login:pw");
}

TEST(Proxy, typesHaveNames) {
    static constexpr struct {
        char const* name;
        int type;
    } read[] = {{"no-proxy", 3}, {"no", 3},   {"none", 3},   {"socks4", 0}, {"sock5", 1}, {"connect", 2},
                {"https", 2},    {"http", 2}, {"socks5", 9}, {"HTTP", 9},   {"", 9}};
    for (auto const& c : read) {
        Proxy proxy(static_cast<Proxy::Type>(9), "host");
        proxy.computeType(c.name);
        EXPECT_EQ(proxy.getType(), c.type) << c.name;
    }
    static constexpr char const* shown[][2] = {
        {"socks4", "socks4"}, {"socks5", "socks5"}, {"https", "https"}, {"none", "no"}, {"", "no"}};
    for (int type = 0; type < 5; ++type) {
        Proxy const proxy(static_cast<Proxy::Type>(type), "");
        EXPECT_EQ(std::as_const(proxy).computeType(), shown[type][0]);
        EXPECT_EQ(proxy.getTypeString(), shown[type][1]);
    }
    EXPECT_EQ(Proxy(), Proxy(Proxy::NO_PROXY, ""));
}

TEST(Proxy, isWrittenWithCredentialAndReadWithCredentials) {
    Proxy proxy(Proxy::HTTP_CONNECT, "host:3128");
    proxy.getCredentials() = Credentials("login", "pw", "domain");
    test::Node document;
    test::NodeWriter writer(document);
    proxy.read(static_cast<IKeyWriter&>(writer));
    EXPECT_EQ(document.text(),
              "type=https;address=host:3128;credential{login=login;password=pw;domain=domain;}");

    test::NodeReader asWritten(document);
    Proxy copy;
    copy.write(static_cast<IKeyReader&>(asWritten));
    EXPECT_EQ(copy, Proxy(Proxy::HTTP_CONNECT, "host:3128")) << "readers look for another name";
    document.children.back().name = "credentials";
    test::NodeReader asConfigured(document);
    copy.write(static_cast<IKeyReader&>(asConfigured));
    EXPECT_EQ(copy, proxy);
}
