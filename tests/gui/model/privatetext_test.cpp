#include "tarvikclient/gui/model/privatetext.h"

#include <gtest/gtest.h>

namespace quillon {

namespace {

TEST(PrivateText, tells_nothing_of_the_user_and_stays_readable) {
    Person const person{{"alice", "a.smith"}, {"/home/alice", "/data/it's alice"}, {"gate.example"}};
    struct {
        char const* line;
        char const* said;
    } const cases[] = {
        {"TRACE TarvikClient.main Tarvik directory is : /home/alice/.Tarvik/",
         "TRACE TarvikClient.main Tarvik directory is : ~/.Tarvik/"},
        {"cannot open \"/home/alice\": /data/it's alice/x", "cannot open \"~\": ~/x"},
        {"/home/alice2/x /srv/home/alice/x file:///home/alice", "/home/alice2/x /srv/home/<user>/x file://~"},
        {"Alice, CORP\\alice, A.Smith@corp; malice alice_2 a.smithy",
         "<user>, CORP\\<user>, <user>@corp; malice alice_2 a.smithy"},
        {"Invalid uri: tarvik://T/i?c@k@gw.example/start?lang=de, and http://gw/",
         "Invalid uri: tarvik://***@<address>/start?lang=de, and http://<address>/"},
        {"Tarvik-Id=demo-ticket; path=/", "Tarvik-Id=***; path=/"},
        {"the cookie Tarvik-Id is missing", "the cookie Tarvik-Id is missing"},
        {"Cookie: a=b; c=d", "Cookie: ***"},
        {R"({"ticket64" : "a\"b", "host": "gw"})", R"({"ticket64" : "***", "host": "gw"})"},
        {"<login>x</login><password>a b</password><password></password>",
         "<login>***</login><password>***</password><password></password>"},
        {"proxyPassword='s3', PASSWORD=s&x=1", "proxyPassword='***', PASSWORD=***&x=1"},
        {"password: two words", "password: ***"},
        {"password=", "password="},
        {"ip=10.8.0.2, [fd00::1]:443 from 10.8.0.1:80. 12:34:56.789 client 8.2.0.21; ECurl::f",
         "ip=<address>, [<address>]:443 from <address>:80. 12:34:56.789 client 8.2.0.21; ECurl::f"},
        {"ip:10.8.0.2 inet10.8.0.2 addr:fe80::1, 10.8.0.2-x ab:cd 2001:db8::1:2 de:ad:10.1.2.3:10.4.5.6 "
         "8.2.0.215",
         "ip:<address> inet<address> addr:<address>, <address>-x ab:cd <address> de:ad:<address>:<address> "
         "<address>"},
        {"[Could not resolve host: Gate.example]; https://gw/https://h2.example:1/x",
         "[Could not resolve host: <address>]; https://<address>/https://<address>/x"},
        {"password: \"open", "password: \"***"},
        {"caf\xE9 \xC3\xA9", "caf\xE9 \xC3\xA9"},
    };
    for (auto const& [line, said] : cases)
        for (std::string const around : {"", "\n"})
            EXPECT_EQ(privateText(around + line + around, person), around + said + around);
}

} // namespace

} // namespace quillon
