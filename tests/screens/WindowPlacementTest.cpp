#include "screens/WindowPlacement.h"

#include <gtest/gtest.h>

#include <ostream>

namespace quorl {

void PrintTo(const WindowFrame& frame, std::ostream* out) {
    *out << frame.x << ' ' << frame.y << ' ' << frame.width << ' ' << frame.height;
}

namespace {

using WindowPlacement::repaired;

constexpr WindowFrame visible{0, 0, 1440, 900};

TEST(WindowPlacement, AWindowInSightStays) {
    EXPECT_EQ(repaired({100, 50, 1240, 800}, visible), std::nullopt);
}

TEST(WindowPlacement, AWindowOfWhichACornerIsInSightStays) {
    EXPECT_EQ(repaired({1439, 899, 1240, 800}, visible), std::nullopt);
    EXPECT_EQ(repaired({-1239, -799, 1240, 800}, visible), std::nullopt);
}

TEST(WindowPlacement, AWindowThatOnlyTouchesTheFrameIsOutOfSight) {
    const WindowFrame centred{100, 50, 1240, 800};

    EXPECT_EQ(repaired({1440, 0, 1240, 800}, visible), centred);
    EXPECT_EQ(repaired({-1240, 0, 1240, 800}, visible), centred);
    EXPECT_EQ(repaired({0, 900, 1240, 800}, visible), centred);
    EXPECT_EQ(repaired({0, -800, 1240, 800}, visible), centred);
}

TEST(WindowPlacement, AWindowMayBeTwentyLargerThanTheFrame) {
    EXPECT_EQ(repaired({0, 0, 1460, 920}, visible), std::nullopt);

    EXPECT_NE(repaired({0, 0, 1461, 920}, visible), std::nullopt);
    EXPECT_NE(repaired({0, 0, 1460, 921}, visible), std::nullopt);
}

TEST(WindowPlacement, AWindowTooLargeComesBackInItsDefaultSizeAndCentred) {
    EXPECT_EQ(repaired({0, 0, 3000, 2000}, visible), (WindowFrame{100, 50, 1240, 800}));
}

TEST(WindowPlacement, OnASmallScreenItLeaves48OfEachDirection) {
    EXPECT_EQ(repaired({0, 0, 3000, 2000}, {0, 0, 1024, 600}), (WindowFrame{24, 24, 976, 552}));
}

TEST(WindowPlacement, ItIsCentredInAFrameThatDoesNotStartAtTheOrigin) {
    EXPECT_EQ(repaired({5000, 5000, 800, 600}, {-1920, 32, 1920, 1048}),
              (WindowFrame{-1580, 156, 1240, 800}));
}

} // namespace
} // namespace quorl
