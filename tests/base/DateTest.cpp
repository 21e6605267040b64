#include "base/Date.h"

#include <gtest/gtest.h>

namespace quorl::test {
namespace {

TEST(Date, KeepsTheFractionOfItsSeconds) {
    for (const double seconds : {0.0, 1'790'000'000.123456, -0.5, -62135769600.0})
        EXPECT_EQ(secondsSince1970(dateFromSeconds(seconds)), seconds);
}

TEST(Date, DistantPastComesBeforeEverything) {
    EXPECT_LT(distantPast, dateFromSeconds(-1e10));
    EXPECT_EQ(secondsSince1970(distantPast), -62135769600.0);
}

TEST(Date, ADurationLeadsFromOneToAnother) {
    EXPECT_EQ(dateFromSeconds(10.25) + std::chrono::milliseconds(500), dateFromSeconds(10.75));
}

} // namespace
} // namespace quorl::test
