#include "tarvikclient/gui/model/typedserver.h"

#include "tarvikclient/clientlocalconfiguration.h"
#include "tarvikclient/gui/model/settingsedit.h"
#include "tarvikclient/gui/model/wxconversion.h"

#include <gtest/gtest.h>

namespace quillon {

namespace {

std::string named(std::string const& typed, std::string const& gateway = {}) {
    return serverNamedBy(wxString::FromUTF8(typed), wxString::FromUTF8(gateway)).utf8_string();
}

TEST(TypedServer, what_is_typed_or_pasted_is_reduced_to_a_server_or_refused) {
    struct Case {
        std::string typed, server;
    };
    std::string const long_(1 << 20, 'a');
    for (auto const& [typed, server] : {
             Case{"gw.example", "gw.example"},
             {" GW.Example. \r\n", "gw.example"},
             {"gw.example:8443", "gw.example:8443"},
             {"gw.example:443", "gw.example"},
             {"gw.example/portal?x#y", "gw.example"},
             {"https://gw.example:8443/path?x=http://b/@", "gw.example:8443"},
             {"https://gw.example#a\nb", "gw.example"},
             {"http://user:p@w@gw.example", "gw.example"},
             {"tarvik://ticket@gw.example/m?lang=en", "gw.example"},
             {"https://gw.example/" + long_, "gw.example"},
             {"[::1]:443", "[::1]"},
             {"[2001:DB8:0::1]:8443", "[2001:db8::1]:8443"},
             {"2001:db8::1", "[2001:db8::1]"},
             {"10.0.0.1:8443", "10.0.0.1:8443"},
             {"xn--bcher-kva.example", "xn--bcher-kva.example"},
             {"b\u00fccher.example:8443", "xn--bcher-kva.example:8443"},
             {"", ""},
             {"https://", ""},
             {"gw example", ""},
             {"gw.example b.example", ""},
             {"gw.example\nb.example", ""},
             {"gw.example,b.example", ""},
             {"gw.example:99999", ""},
             {"gw.example:0", ""},
             {"gw.example:", ""},
             {":443", ""},
             {"alice@gw.example", ""},
             {"https:\\\\gw.example\\", ""},
             {"*.example", ""},
             {"127.1", ""},
             {"::1]:443", ""},
             {"gw.example\xe2\x80\xae", ""},
             {std::string("gw.example\0.evil", 16), ""},
             {"<gw.example>", ""},
             {long_, ""},
             {"https://" + long_ + "@gw.example", ""},
         })
        EXPECT_EQ(named(typed), server) << typed.substr(0, 60);
}

TEST(TypedServer, an_exception_has_the_bytes_of_the_requests_to_the_gateway) {
    struct Gateway {
        char const *written, *canonical;
    };
    for (auto const& [gateway, server] : {Gateway{"gw.example", "gw.example"},
                                          {"Gw.Example", "gw.example"},
                                          {"gw.example:443", "gw.example"},
                                          {"gw.example.:8443", "gw.example:8443"},
                                          {"[::1]:443", "::1"}}) {
        SettingsEdit edit;
        for (wxString const& typed : {wxString(server), "https://" + wxString(gateway) + "/portal"})
            EXPECT_EQ(edit.addDomain(typed, gateway), TypedDomain::taken);
        EXPECT_EQ(edit.addDomain("gw.example:99999", gateway), TypedDomain::refused);
        EXPECT_EQ(edit.addDomain(" \t", gateway), TypedDomain::blank);
        EXPECT_EQ(edit.domains.size(), 1u) << gateway;
        ClientLocalConfiguration conf;
        edit.write(conf);
        EXPECT_TRUE(conf.isSslCertIgnored(gateway)) << gateway;
    }
}

} // namespace

} // namespace quillon
