#include "screens/Graphics.h"

#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <fstream>

namespace quorl::test {
namespace {

void touch(const std::filesystem::path& file) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream{file};
}

TEST(Graphics, AMachineWithoutDevicesHasNone) {
    const TempFolder devices;

    EXPECT_FALSE(hasGraphicsDevice(devices.path()));
}

TEST(Graphics, ACardThatOnlyShowsPicturesIsNone) {
    const TempFolder devices;
    touch(devices.path() / "dri" / "card0");

    EXPECT_FALSE(hasGraphicsDevice(devices.path()));
}

TEST(Graphics, ARenderNodeIsOne) {
    const TempFolder devices;
    touch(devices.path() / "dri" / "card0");
    touch(devices.path() / "dri" / "renderD128");

    EXPECT_TRUE(hasGraphicsDevice(devices.path()));
}

TEST(Graphics, ADriverOfItsOwnKindIsOne) {
    const TempFolder devices;
    touch(devices.path() / "nvidiactl");

    EXPECT_TRUE(hasGraphicsDevice(devices.path()));
}

} // namespace
} // namespace quorl::test
