#include "base/UUID.h"

#include <gtest/gtest.h>

#include <unordered_set>

namespace quorl::test {
namespace {

constexpr const char* upper = "0A1B2C3D-4E5F-4A6B-8C7D-9E8FA0B1C2D3";

TEST(UUID, IsWrittenInUpperCase) {
    EXPECT_EQ(UUID::parse(upper)->text(), upper);
    EXPECT_EQ(UUID::parse("0a1b2c3d-4e5f-4a6b-8c7d-9e8fa0b1c2d3")->text(), upper);
    EXPECT_EQ(UUID().text(), "00000000-0000-0000-0000-000000000000");
}

TEST(UUID, ReadsDigitsOfEitherCaseToTheSameIdentifier) {
    EXPECT_EQ(UUID::parse("0a1b2c3d-4E5F-4a6b-8C7D-9e8fa0b1c2d3"), UUID::parse(upper));
}

TEST(UUID, ReadsOnlyTheCanonicalForm) {
    for (const auto* text :
         {"", "0A1B2C3D4E5F4A6B8C7D9E8FA0B1C2D3", "{0A1B2C3D-4E5F-4A6B-8C7D-9E8FA0B1C2D3}",
          " 0A1B2C3D-4E5F-4A6B-8C7D-9E8FA0B1C2D3", "0A1B2C3D-4E5F-4A6B-8C7D-9E8FA0B1C2D3\n",
          "0A1B2C3D-4E5F-4A6B-8C7D-9E8FA0B1C2D", "0A1B2C3D-4E5F-4A6B-8C7D-9E8FA0B1C2DG",
          "0A1B2C3D_4E5F_4A6B_8C7D_9E8FA0B1C2D3", "0A1B2C3-D4E5F-4A6B-8C7D-9E8FA0B1C2D3",
          "0A1B2C3D-4E5F-4A6B-8C7D-9E8FA0B1C2-3", "------------------------------------"})
        EXPECT_EQ(UUID::parse(text), std::nullopt) << text;
    EXPECT_EQ(UUID::parse(std::string(36, '\0')), std::nullopt);
}

TEST(UUID, ARandomOneIsOfVersionFourAndLikeNoOther) {
    std::unordered_set<UUID> seen;
    for (int number = 0; number < 1000; ++number) {
        const auto id = UUID::random();
        const auto text = id.text();

        EXPECT_EQ(text[14], '4') << text;
        EXPECT_NE(std::string("89AB").find(text[19]), std::string::npos) << text;
        EXPECT_EQ(UUID::parse(text), id);
        EXPECT_TRUE(seen.insert(id).second);
    }
}

TEST(UUID, IsOrderedAsItsText) {
    const auto first = UUID::random();
    const auto second = UUID::random();

    EXPECT_EQ(first < second, first.text() < second.text());
}

} // namespace
} // namespace quorl::test
