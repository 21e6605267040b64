#include "platform/linux/XDGDirectories.h"

#include "platform/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorl::test {
namespace {

struct Environment {
    ScopedVariable home, config, data, state;
};

Environment environmentOf(const char* home, const char* config, const char* data, const char* state) {
    return {{"HOME", home}, {"XDG_CONFIG_HOME", config}, {"XDG_DATA_HOME", data}, {"XDG_STATE_HOME", state}};
}

TEST(XDGDirectories, AreThoseOfTheEnvironment) {
    const auto environment = environmentOf("/home/ada", "/c", "/d d", "/s/");

    EXPECT_EQ(xdgDirectories(), (XDGDirectories{"/c", "/d d", "/s/"}));
}

TEST(XDGDirectories, LieBelowTheHomeFolderByDefault) {
    const auto environment = environmentOf("/home/ada", nullptr, nullptr, nullptr);

    EXPECT_EQ(xdgDirectories(),
              (XDGDirectories{"/home/ada/.config", "/home/ada/.local/share", "/home/ada/.local/state"}));
}

TEST(XDGDirectories, EmptyAndRelativeValuesCountAsUnset) {
    const auto environment = environmentOf("/home/ada", "", "relative/data", "~/state");

    EXPECT_EQ(xdgDirectories(),
              (XDGDirectories{"/home/ada/.config", "/home/ada/.local/share", "/home/ada/.local/state"}));
}

TEST(XDGDirectories, WithoutAHomeVariableTheAccountsHomeCounts) {
    const std::filesystem::path home = getpwuid(getuid())->pw_dir;
    for (const char* variable : {static_cast<const char*>(nullptr), "", "relative"}) {
        const auto environment = environmentOf(variable, nullptr, nullptr, nullptr);

        EXPECT_EQ(xdgDirectories().config, home / ".config");
    }
}

TEST(XDGDirectories, HoldOurFilesInAFolderOfTheProgramsName) {
    const XDGDirectories directories{"/c", "/d", "/s"};

    EXPECT_EQ(defaultsFile(directories), "/c/com.quorltest.app/defaults.ini");
    EXPECT_EQ(windowStateFile(directories), "/s/com.quorltest.app/window.ini");
    EXPECT_EQ(applicationSupportDirectory(directories), "/d");
}

TEST(PrivateFolder, IsMadeWithAllThatIsMissingAboveIt) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path / "there");
    std::filesystem::permissions(folder.path / "there", std::filesystem::perms(0755));

    const auto mask = umask(0);
    makePrivateFolder(folder.path / "there" / "new" / "newer");
    umask(mask);

    EXPECT_EQ(std::filesystem::status(folder.path / "there").permissions(), std::filesystem::perms(0755));
    EXPECT_EQ(std::filesystem::status(folder.path / "there/new").permissions(), std::filesystem::perms(0700));
    EXPECT_EQ(std::filesystem::status(folder.path / "there/new/newer").permissions(),
              std::filesystem::perms(0700));
}

TEST(PrivateFolder, ThatCannotBeMadeIsUnseen) {
    const TemporaryFolder folder;
    std::ofstream(folder.path / "file") << "in the way";

    makePrivateFolder(folder.path / "file" / "below");

    EXPECT_TRUE(std::filesystem::is_regular_file(folder.path / "file"));
}

} // namespace
} // namespace quorl::test
