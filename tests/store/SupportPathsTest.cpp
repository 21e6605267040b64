#include "store/SupportPaths.h"

#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <fstream>

namespace quorl::test {

namespace {

std::filesystem::perms modeOf(const std::filesystem::path& path) {
    return std::filesystem::status(path).permissions();
}

constexpr auto onlyForTheUser = std::filesystem::perms(0700);

} // namespace

TEST(SupportPaths, MakesTheLibrarysFolderAndItsScratchForTheUserAlone) {
    TempFolder folder;
    const mode_t before = umask(0);

    const auto directory = SupportPaths::directory(folder.path() / "share");

    umask(before);
    EXPECT_EQ(directory, folder.path() / "share" / "com.quorltest.app");
    EXPECT_EQ(SupportPaths::scratch(directory), directory / "cli-scratch");
    EXPECT_EQ(modeOf(directory), onlyForTheUser);
    EXPECT_EQ(modeOf(directory / "cli-scratch"), onlyForTheUser);
    EXPECT_EQ(modeOf(folder.path() / "share"), onlyForTheUser) << "made on the way";
}

TEST(SupportPaths, LeavesWhatIsThere) {
    TempFolder folder;
    const auto directory = SupportPaths::directory(folder.path());
    std::ofstream(directory / "quorl.sqlite") << "content";
    std::filesystem::permissions(directory, std::filesystem::perms(0750));

    EXPECT_EQ(SupportPaths::directory(folder.path()), directory);

    EXPECT_TRUE(std::filesystem::exists(directory / "quorl.sqlite"));
    EXPECT_EQ(modeOf(directory), std::filesystem::perms(0750));
}

TEST(SupportPaths, MakesAMissingScratchInAnExistingFolder) {
    TempFolder folder;
    const auto directory = SupportPaths::directory(folder.path());
    std::filesystem::remove(directory / "cli-scratch");

    SupportPaths::directory(folder.path());

    EXPECT_TRUE(std::filesystem::is_directory(directory / "cli-scratch"));
}

TEST(SupportPaths, AnswersThePathEvenWhereNothingCanBeMade) {
    TempFolder folder;
    const auto file = folder.path() / "file";
    std::ofstream(file) << "in the way";

    EXPECT_EQ(SupportPaths::directory(file), file / "com.quorltest.app");

    EXPECT_FALSE(std::filesystem::exists(file / "com.quorltest.app"));
}

} // namespace quorl::test
