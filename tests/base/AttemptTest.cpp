#include "base/Attempt.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace quorl::test {
namespace {

TEST(Attempt, ASuccessHoldsItsValue) {
    const auto attempt = Attempt<std::vector<int>>::success({1, 2});

    EXPECT_TRUE(attempt);
    EXPECT_EQ(attempt.value(), (std::vector{1, 2}));
}

TEST(Attempt, AFailureHoldsItsSentence) {
    const auto attempt = Attempt<int>::failure("It is late.");

    EXPECT_FALSE(attempt);
    EXPECT_EQ(attempt.message(), "It is late.");
}

TEST(Attempt, ATextMayBeEither) {
    EXPECT_TRUE(Attempt<std::string>::success("the same"));
    EXPECT_FALSE(Attempt<std::string>::failure("the same"));
}

TEST(Attempt, AValueCanBeMovedOut) {
    auto attempt = Attempt<std::unique_ptr<int>>::success(std::make_unique<int>(7));

    const std::unique_ptr<int> value = std::move(attempt).value();

    EXPECT_EQ(*value, 7);
}

} // namespace
} // namespace quorl::test
