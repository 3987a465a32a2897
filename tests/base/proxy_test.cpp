#include "base/proxy.h"

#include "base/stringwriter.h"
#include "xml/parserreader.h"
#include "xml/writerkeywriter.h"

#include <gtest/gtest.h>

using namespace quillon;

TEST(Credentials, domain_logins_are_taken_apart) {
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

TEST(Proxy, is_written_with_credential_and_read_with_credentials) {
    Proxy proxy(Proxy::HTTP_CONNECT, "host:3128");
    proxy.getCredentials() = Credentials("login", "pw", "domain");
    String text;
    StringWriter target(text);
    {
        xml::WriterKeyWriter writer(target);
        proxy.read(writer["p"]);
    }
    EXPECT_EQ(text, "<p>\r\n <type>https</type>\r\n <address>host:3128</address>\r\n <credential>\r\n"
                    "  <login>login</login>\r\n  <password>pw</password>\r\n  <domain>domain</domain>\r\n"
                    " </credential>\r\n</p>");
    auto const read = [](String const& from) {
        auto document = xml::ParserReader::fromText(from);
        Proxy copy;
        copy.write(document["p"]);
        return copy;
    };
    EXPECT_EQ(read(text), Proxy(Proxy::HTTP_CONNECT, "host:3128")) << "readers look for another name";
    EXPECT_EQ(read(text.replace("credential", "credentials")), proxy);
}
