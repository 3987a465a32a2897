#include "tarvikclient/gui/model/quitting.h"

#include <gtest/gtest.h>

namespace quillon {

using Step = Quitting::Step;

TEST(Quitting, goes_further_each_time_a_session_does_not_end) {
    struct Case {
        bool atWork;
        std::chrono::seconds cut; // after the start
    };
    for (auto const [atWork, cut] : {Case{false, {}}, Case{true, Quitting::grace}}) {
        Quitting::Time const start{std::chrono::hours(5)};
        std::chrono::milliseconds const instant{1};
        Quitting quitting;
        EXPECT_EQ(quitting.advance(start), Step::wait);
        EXPECT_FALSE(quitting.begun());

        quitting.begin(start, atWork);
        EXPECT_EQ(quitting.advance(start + cut - instant), Step::wait);
        // Asking again, or what the session has got to meanwhile, gives it no more time.
        quitting.begin(start + cut, !atWork);
        EXPECT_EQ(quitting.advance(start + cut), Step::cancel);
        EXPECT_EQ(quitting.advance(start + cut + Quitting::patience - instant), Step::wait);
        EXPECT_EQ(quitting.advance(start + cut + Quitting::patience), Step::abandon);
        EXPECT_EQ(quitting.advance(start + std::chrono::hours(1)), Step::wait);
        EXPECT_TRUE(quitting.begun());
    }
}

} // namespace quillon
