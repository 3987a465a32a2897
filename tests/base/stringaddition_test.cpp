#include "base/string.h"

#include <gtest/gtest.h>

using namespace quillon;

TEST(StringAddition, putsAnyNumberOfPartsTogether) {
    StringAddition addition;
    std::string expected;
    for (unsigned i = 0; i < 40; ++i) {
        EXPECT_EQ(String(addition).view(), expected) << i << " parts";
        EXPECT_EQ(addition.length(), expected.size());
        addition = addition + toString(i) + ',';
        expected += std::to_string(i) + ',';
    }
    String target("head ");
    target.append(addition);
    EXPECT_EQ(target.view(), "head " + expected);
}

TEST(StringAddition, theTargetMayBeAPart) {
    String s = String::copyOf("ab");
    s = s + "" + s + String() + 'c' + s.range(1);
    EXPECT_EQ(s, "ababcb");
}

TEST(StringAddition, longChainsAreTakenApartWithoutRecursion) {
    StringAddition addition;
    for (unsigned i = 0; i < 1000000; ++i)
        addition.add("x");
    StringAddition const copy = addition;
    addition = StringAddition();
    EXPECT_EQ(copy.toString().length(), 1000000u);
}
