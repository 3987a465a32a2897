#include "http/hostport.h"

#include <gtest/gtest.h>

using namespace quillon;
using http::HostPort;

namespace {

std::string read(std::string const& text) {
    auto const place = HostPort::parse(String::copyOf(text), 443);
    return place ? std::string(place->toString(443).view()) : "none";
}

} // namespace

TEST(HostPort, one_form_for_one_place_and_none_where_libraries_differ) {
    static constexpr char const* cases[][2] = {
        {"gate.example", "gate.example"},
        {"GATE.Example.", "gate.example"},
        {"gate.example:00443", "gate.example"},
        {"gate.example:8443", "gate.example:8443"},
        {"under_score.example", "under_score.example"},
        {"127.0.0.1:80", "127.0.0.1:80"},
        {"[2001:DB8:0:0::1]:444", "[2001:db8::1]:444"},
        {"b\u00FCcher.example", "xn--bcher-kva.example"},
        {"XN--BCHER-KVA.example", "xn--bcher-kva.example"},
        {"\u0440\u0430\u0443\u0440\u0430\u04CF.example", "xn--80aa0cbo65f.example"}, // paypal in Cyrillic
        {"\uFF47ate.example", "gate.example"},                                       // a wide g
        {"gate\u3002example", "gate.example"},     // an ideographic full stop
        {"\uFF11\uFF12\uFF17.0.0.1", "127.0.0.1"}, // wide digits
    };
    for (auto const& [text, form] : cases)
        EXPECT_EQ(read(text), form) << text;
    std::string const withNul("gate.example\0.evil.example", 26), tooLong(64, 'a'), dots(126, '.');
    // User info and what a library could read as some; a character that is mapped to "a/c", a right-to-left
    // override, what is not UTF-8; ports; what only some libraries take for an address.
    for (std::string const& text : std::vector<std::string>{"ticket@gate.example",
                                                            "gate.example@evil.example",
                                                            "gate.example\\@evil.example",
                                                            "gate.example:443@evil.example",
                                                            "gate.example%40evil.example",
                                                            "gate%2Eexample",
                                                            withNul,
                                                            "gate.example\r\nHost: x",
                                                            "gate example",
                                                            "\u2100.example",
                                                            "gate\u202E.example",
                                                            "gate\xFF.example",
                                                            "gate..example",
                                                            ".example",
                                                            ".",
                                                            "gate.example..",
                                                            "",
                                                            ":443",
                                                            tooLong + ".example",
                                                            "a" + dots,
                                                            "gate.example:",
                                                            "gate.example:0",
                                                            "gate.example:65536",
                                                            "gate.example:4294967739",
                                                            "gate.example:443:443",
                                                            "gate.example:+443",
                                                            "gate.example:443 ",
                                                            "127.1",
                                                            "127.0.0.1.",
                                                            "2130706433",
                                                            "0x7f000001",
                                                            "0177.0.0.1",
                                                            "gate.0x7f",
                                                            "[::1",
                                                            "::1",
                                                            "[::1]x",
                                                            "[fe80::1%25eth0]",
                                                            "[gate.example]",
                                                            "[]"})
        EXPECT_EQ(read(text), "none") << text;
}

TEST(HostPort, a_name_that_could_be_taken_for_another_has_no_international_form) {
    static constexpr char const* cases[][2] = {
        {"gate.example", ""},
        {"xn--bcher-kva.example", "b\u00FCcher.example"},
        {"xn--e1afmkfd.xn--80akhbyknj4f",
         "\u043F\u0440\u0438\u043C\u0435\u0440.\u0438\u0441\u043F\u044B\u0442\u0430\u043D\u0438\u0435"},
        {"xn--80ak6aa92e.com", ""},                   // Cyrillic alone, drawn like "apple"
        {"xn--pypal-4ve.com", ""},                    // a Cyrillic "a" among Latin letters
        {"xn--4dbcagdahymbxekheh6e0a7fei0b.com", ""}, // from right to left
        {"xn--gate-.example", ""},                    // decodes to what does not lead back
        {"xn--a.example", ""},
        {"127.0.0.1", ""},
    };
    for (auto const& [host, international] : cases)
        EXPECT_EQ(HostPort::parse(host, 443)->internationalName(), international) << host;
}
