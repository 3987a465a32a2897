#include "http/setcookie.h"

#include <gtest/gtest.h>

using namespace quillon;

TEST(SetCookie, writesOnlyWhatIsSet) {
    http::SetCookie cookie("Tarvik-Id", "");
    EXPECT_EQ(cookie.toString(), "Tarvik-Id=");
    cookie.setPath("/");
    cookie.setDomain("gate.example");
    EXPECT_EQ(cookie.toString(), "Tarvik-Id=; domain=gate.example; path=/");
    cookie.setName("n");
    cookie.setValue("v");
    cookie.setMaxAge(0);
    cookie.setSecure(true);
    cookie.addAttribute("SameSite", "Lax");
    cookie.addAttribute("Priority", "High");
    cookie.setExpires("Thu, 01 Jan 1970 00:00:00 GMT");
    EXPECT_EQ(cookie.toString(),
              "n=v; domain=gate.example; path=/; expires=\"Thu, 01 Jan 1970 00:00:00 GMT\"; "
              "SameSite=\"Lax\"; Priority=\"High\"; secure; max-age=0");
}
