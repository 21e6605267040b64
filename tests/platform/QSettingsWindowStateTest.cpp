#include "platform/linux/QSettingsWindowState.h"

#include "platform/TemporaryFolder.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <sys/stat.h>

namespace quorl::test {
namespace {

class QSettingsWindowStateFile : public testing::Test {
protected:
    void write(const std::string& text) const {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }
    std::string contents() const {
        std::ostringstream text;
        text << std::ifstream(file).rdbuf();
        return text.str();
    }
    std::optional<WindowFrame> frameFrom(const std::string& value) const {
        write("[General]\nframe=" + value + "\n");
        return QSettingsWindowState(file).frame();
    }
    std::optional<int> dividerFrom(const std::string& value) const {
        write("[General]\ndivider=" + value + "\n");
        return QSettingsWindowState(file).divider();
    }

    int count = 0;
    QCoreApplication application{count, nullptr};
    TemporaryFolder folder;
    const std::filesystem::path file = folder.path / "state" / "com.quorltest.app" / "window.ini";
};

TEST_F(QSettingsWindowStateFile, HoldsNothingAtFirst) {
    const QSettingsWindowState state(file);

    EXPECT_EQ(state.frame(), std::nullopt);
    EXPECT_EQ(state.divider(), std::nullopt);
}

TEST_F(QSettingsWindowStateFile, KeepsFrameAndDividerOverARestart) {
    const WindowFrame left{-1920, 32, 1240, 800};
    {
        QSettingsWindowState state(file);
        state.setFrame(left);
        state.setDivider(420);
        EXPECT_EQ(state.frame(), left);
        EXPECT_EQ(state.divider(), 420);
    }

    const QSettingsWindowState state(file);
    EXPECT_EQ(state.frame(), left);
    EXPECT_EQ(state.divider(), 420);
}

TEST_F(QSettingsWindowStateFile, IsOnDiskOnceTheLoopHasTurned) {
    QSettingsWindowState state(file);
    state.setFrame({10, 20, 1240, 800});
    state.setDivider(420);

    QCoreApplication::processEvents();

    EXPECT_EQ(contents(), "[General]\ndivider=420\nframe=10 20 1240 800\n");
}

TEST_F(QSettingsWindowStateFile, ADamagedFrameIsNone) {
    EXPECT_EQ(frameFrom("10 20 1240 800"), (WindowFrame{10, 20, 1240, 800}));

    for (const char* damaged :
         {"", "10", "10 20 1240", "10 20 1240 800 1", "10 20 1240 x", "10 20 1240 800.5", "10 20  1240 800",
          "10, 20, 1240, 800", "@Invalid()", "@ByteArray(10 20 1240 800)", "@Rect(10 20 1240 800)",
          "99999999999 20 1240 800"})
        EXPECT_EQ(frameFrom(damaged), std::nullopt) << damaged;
}

TEST_F(QSettingsWindowStateFile, AnAbsurdFrameIsNone) {
    EXPECT_EQ(frameFrom("-32767 32767 1 32767"), (WindowFrame{-32767, 32767, 1, 32767}));

    for (const char* absurd : {"-32768 20 1240 800", "10 32768 1240 800", "10 20 0 800", "10 20 1240 0",
                               "10 20 -1240 800", "10 20 32768 800", "10 20 1240 32768"})
        EXPECT_EQ(frameFrom(absurd), std::nullopt) << absurd;
}

TEST_F(QSettingsWindowStateFile, ADamagedOrAbsurdDividerIsNone) {
    EXPECT_EQ(dividerFrom("420"), 420);

    for (const char* bad : {"", "x", "4.5", "0", "-1", "32768", "1, 2", "@Invalid()"})
        EXPECT_EQ(dividerFrom(bad), std::nullopt) << bad;
}

TEST_F(QSettingsWindowStateFile, AFileThatIsNoINIHoldsNothing) {
    write(std::string("\0\xFF[[[=\n", 7));
    const QSettingsWindowState state(file);

    EXPECT_EQ(state.frame(), std::nullopt);
    EXPECT_EQ(state.divider(), std::nullopt);
}

TEST_F(QSettingsWindowStateFile, ItsFolderIsTheUsersAlone) {
    QSettingsWindowState(file).setDivider(420);

    struct stat status {};
    ASSERT_EQ(stat(file.parent_path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777u, 0700u);
}

TEST_F(QSettingsWindowStateFile, WhatCannotBeWrittenIsUnseen) {
    std::ofstream(folder.path / "state") << "a file in the folder's place";
    QSettingsWindowState state(file);

    state.setDivider(420);
    QCoreApplication::processEvents();

    EXPECT_EQ(state.divider(), 420);
}

} // namespace
} // namespace quorl::test
