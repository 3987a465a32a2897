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

TEST(HostPort, oneFormForOnePlaceAndNoneWhereLibrariesDiffer) {
    struct {
        std::string text, form;
    } const cases[] = {
        {"gate.example", "gate.example"},
        {"GATE.Example.", "gate.example"},
        {"gate.example:443", "gate.example"},
        {"gate.example:00443", "gate.example"},
        {"gate.example:8443", "gate.example:8443"},
        {"localhost", "localhost"},
        {"under_score.example", "under_score.example"},
        {"127.0.0.1:80", "127.0.0.1:80"},
        {"[::1]", "[::1]"},
        {"[2001:DB8:0:0::1]:444", "[2001:db8::1]:444"},
        {"b\xC3\xBC"
         "cher.example",
         "xn--bcher-kva.example"},
        {"XN--BCHER-KVA.example", "xn--bcher-kva.example"},
        {"\xD1\x80\xD0\xB0\xD1\x83\xD1\x80\xD0\xB0\xD3\x8F.example",
         "xn--80aa0cbo65f.example"}, // paypal in Cyrillic
        {"\xEF\xBD\x87"
         "ate.example",
         "gate.example"}, // a wide g
        {"gate\xE3\x80\x82"
         "example",
         "gate.example"},                                            // an ideographic full stop
        {"\xEF\xBC\x91\xEF\xBC\x92\xEF\xBC\x97.0.0.1", "127.0.0.1"}, // wide digits
        // User info, and what a library could read as some.
        {"ticket@gate.example", "none"},
        {"gate.example@evil.example", "none"},
        {"gate.example\\@evil.example", "none"},
        {"gate.example:443@evil.example", "none"},
        {"gate.example%40evil.example", "none"},
        {"gate%2Eexample", "none"},
        {std::string("gate.example\0.evil.example", 26), "none"},
        {"gate.example\r\nHost: x", "none"},
        {"gate example", "none"},
        {"\xE2\x84\x80.example", "none"},     // a character that is mapped to "a/c"
        {"gate\xE2\x80\xAE.example", "none"}, // right-to-left override
        {"gate\xFF.example", "none"},         // not UTF-8
        {"gate..example", "none"},
        {".example", "none"},
        {".", "none"},
        {"gate.example..", "none"},
        {"", "none"},
        {":443", "none"},
        {std::string(64, 'a') + ".example", "none"},
        {std::string(127, 'a').replace(1, 126, "") + std::string(126, '.'), "none"},
        // Ports.
        {"gate.example:", "none"},
        {"gate.example:0", "none"},
        {"gate.example:65536", "none"},
        {"gate.example:4294967739", "none"},
        {"gate.example:443:443", "none"},
        {"gate.example:+443", "none"},
        {"gate.example:443 ", "none"},
        // What only some libraries take for an address.
        {"127.1", "none"},
        {"2130706433", "none"},
        {"0x7f000001", "none"},
        {"0177.0.0.1", "none"},
        {"gate.0x7f", "none"},
        {"[::1", "none"},
        {"::1", "none"},
        {"[::1]x", "none"},
        {"[fe80::1%25eth0]", "none"},
        {"[gate.example]", "none"},
        {"[]", "none"},
    };
    for (auto const& [text, form] : cases)
        EXPECT_EQ(read(text), form) << text;
}

TEST(HostPort, aNameThatCouldBeTakenForAnotherHasNoInternationalForm) {
    struct {
        char const *host, *international;
    } const cases[] = {
        {"gate.example", ""},
        {"xn--bcher-kva.example", "b\xC3\xBC"
                                  "cher.example"},
        {"xn--e1afmkfd.xn--80akhbyknj4f",
         "\xD0\xBF\xD1\x80\xD0\xB8\xD0\xBC\xD0\xB5\xD1\x80."
         "\xD0\xB8\xD1\x81\xD0\xBF\xD1\x8B\xD1\x82\xD0\xB0\xD0\xBD\xD0\xB8\xD0\xB5"},
        {"xn--pypal-4ve.com", ""},                    // a Cyrillic "a" among Latin letters
        {"xn--4dbcagdahymbxekheh6e0a7fei0b.com", ""}, // from right to left
        {"xn--gate-.example", ""},                    // decodes to what does not lead back
        {"xn--a.example", ""},
        {"127.0.0.1", ""},
    };
    for (auto const& [host, international] : cases)
        EXPECT_EQ(HostPort::parse(host, 443)->internationalName(), international) << host;
}
