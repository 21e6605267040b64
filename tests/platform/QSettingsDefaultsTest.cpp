#include "platform/linux/QSettingsDefaults.h"

#include "platform/TemporaryFolder.h"

#include <QCoreApplication>
#include <QSettings>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <sys/stat.h>

namespace quorl::test {
namespace {

using Text = std::optional<std::string>;
using Texts = std::optional<std::vector<std::string>>;

class QSettingsDefaultsFile : public testing::Test {
protected:
    std::string contents() const {
        std::ostringstream text;
        text << std::ifstream(file).rdbuf();
        return text.str();
    }
    void write(const std::string& text) const {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }
    unsigned modeOf(const std::filesystem::path& path) const {
        struct stat status {};
        return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777u : 0u;
    }

    int count = 0;
    QCoreApplication application{count, nullptr};
    TemporaryFolder folder;
    const std::filesystem::path file = folder.path / "config" / "com.quorltest.app" / "defaults.ini";
};

// What a key holds in the same process and after a restart.
template <class Set, class Check>
void inBothLives(const std::filesystem::path& file, Set set, Check check) {
    QSettingsDefaults first(file);
    set(first);
    check(first);
    QCoreApplication::processEvents();
    const QSettingsDefaults second(file);
    check(second);
}

const std::vector<std::string> oddTexts{
    "",
    " ",
    " padded\t",
    "@",
    "@@",
    "@ByteArray(x)",
    "@Invalid()",
    "a, b; c",
    ",",
    "\"quoted\" and 'single'",
    "back\\slash \\n \\x41",
    "line\nline\r\nline",
    "percent %20 %",
    "key=value [General]",
    "# ; comment",
    "Größe 漢字 \U0001F469\u200D\U0001F680 e\u0301",
    "\u2028\u00A0\uFEFF",
    std::string("nul\0byte", 8),
    "\x01\x1F\x7F",
    "true",
    "12",
};

TEST_F(QSettingsDefaultsFile, KeepsTextsOfEveryKind) {
    for (const auto& text : oddTexts) {
        inBothLives(
            file, [&](QSettingsDefaults& defaults) { defaults.setString("draft.prompt", text); },
            [&](const QSettingsDefaults& defaults) { EXPECT_EQ(defaults.string("draft.prompt"), text); });
    }
}

TEST_F(QSettingsDefaultsFile, KeepsListsOfEveryLength) {
    std::vector<std::vector<std::string>> lists{
        {}, {"", ""}, {"one", "two"}, {"a, b", "\"c\"", "@d", ""}, oddTexts};
    for (const auto& text : oddTexts)
        lists.push_back({text});
    for (const auto& list : lists) {
        inBothLives(
            file, [&](QSettingsDefaults& defaults) { defaults.setStrings("draft.models", list); },
            [&](const QSettingsDefaults& defaults) {
                EXPECT_TRUE(defaults.contains("draft.models"));
                EXPECT_EQ(defaults.strings("draft.models"), list);
            });
    }
}

TEST_F(QSettingsDefaultsFile, KeepsBytesOfEveryValue) {
    std::string bytes;
    for (int value = 0; value < 256; ++value)
        bytes += static_cast<char>(value);
    for (const auto& written : {bytes, std::string(), std::string(R"([{"id":"A","text":"ä, \"b\""}])")}) {
        inBothLives(
            file, [&](QSettingsDefaults& defaults) { defaults.setBytes("draft.bulkQuestions", written); },
            [&](const QSettingsDefaults& defaults) {
                EXPECT_EQ(defaults.bytes("draft.bulkQuestions"), written);
                EXPECT_EQ(defaults.string("draft.bulkQuestions"), Text());
                EXPECT_EQ(defaults.strings("draft.bulkQuestions"), Texts());
            });
    }
}

TEST_F(QSettingsDefaultsFile, KeepsBooleans) {
    for (const bool value : {true, false}) {
        inBothLives(
            file, [&](QSettingsDefaults& defaults) { defaults.setBoolean("draft.bulk", value); },
            [&](const QSettingsDefaults& defaults) {
                EXPECT_TRUE(defaults.contains("draft.bulk"));
                EXPECT_EQ(defaults.boolean("draft.bulk"), value);
            });
    }
}

TEST_F(QSettingsDefaultsFile, AnAbsentKeyHoldsNothing) {
    const QSettingsDefaults defaults(file);

    EXPECT_FALSE(defaults.contains("draft.kind"));
    EXPECT_EQ(defaults.string("draft.kind"), Text());
    EXPECT_FALSE(defaults.boolean("draft.kind"));
    EXPECT_EQ(defaults.bytes("draft.kind"), Text());
    EXPECT_EQ(defaults.strings("draft.kind"), Texts());
}

TEST_F(QSettingsDefaultsFile, AValueOfAnotherTypeIsNone) {
    inBothLives(
        file,
        [](QSettingsDefaults& defaults) {
            defaults.setString("text", "words");
            defaults.setBytes("bytes", "true");
            defaults.setStrings("list", {"true", "true"});
            defaults.setStrings("empty", {});
        },
        [](const QSettingsDefaults& defaults) {
            EXPECT_FALSE(defaults.boolean("text"));
            EXPECT_EQ(defaults.bytes("text"), Text());
            EXPECT_FALSE(defaults.boolean("bytes"));
            EXPECT_EQ(defaults.string("list"), Text());
            EXPECT_FALSE(defaults.boolean("list"));
            EXPECT_EQ(defaults.bytes("list"), Text());
            EXPECT_EQ(defaults.string("empty"), Text());
            EXPECT_EQ(defaults.bytes("empty"), Text());
            EXPECT_FALSE(defaults.boolean("empty"));
        });
}

TEST_F(QSettingsDefaultsFile, ASettingOfAnotherTypeTakesTheKeyOver) {
    QSettingsDefaults defaults(file);
    defaults.setStrings("key", {"a", "b"});

    defaults.setString("key", "text");
    EXPECT_EQ(defaults.string("key"), "text");
    defaults.setBytes("key", "text");
    EXPECT_EQ(defaults.bytes("key"), "text");
    defaults.setStrings("key", {});
    EXPECT_EQ(defaults.strings("key"), std::vector<std::string>());
    EXPECT_EQ(defaults.bytes("key"), Text());
}

TEST_F(QSettingsDefaultsFile, StandsInTheGeneralSectionUnderTheKeysAsNamed) {
    QSettingsDefaults defaults(file);
    defaults.setString("draft.kind", "generation");
    defaults.setBoolean("draft.bulk", true);
    defaults.setStrings("draft.models", {"A", "B"});
    defaults.setBytes("draft.bulkQuestions", "[]");
    defaults.setString("quorl.motion.preference", "reduced");

    QCoreApplication::processEvents();

    EXPECT_EQ(contents(), "[General]\n"
                          "draft.bulk=true\n"
                          "draft.bulkQuestions=@ByteArray([])\n"
                          "draft.kind=generation\n"
                          "draft.models=A, B\n"
                          "quorl.motion.preference=reduced\n");
}

TEST_F(QSettingsDefaultsFile, ReadsAFileWrittenByHand) {
    write("[General]\napi.token=0123abcd\ndraft.bulk=true\ndraft.models=A\ndraft.prompt=\"Hello, world\"\n");
    const QSettingsDefaults defaults(file);

    EXPECT_EQ(defaults.string("api.token"), "0123abcd");
    EXPECT_TRUE(defaults.boolean("draft.bulk"));
    EXPECT_EQ(defaults.strings("draft.models"), std::vector<std::string>{"A"});
    EXPECT_EQ(defaults.string("draft.prompt"), "Hello, world");
}

TEST_F(QSettingsDefaultsFile, OtherProgramsReadItAsQSettings) {
    {
        QSettingsDefaults defaults(file);
        defaults.setString("draft.prompt", "Größe, @ \n");
        defaults.setBoolean("draft.bulk", true);
    }

    const QSettings settings(QString::fromStdString(file.string()), QSettings::IniFormat);
    EXPECT_EQ(settings.value("draft.prompt").toString().toStdString(), "Größe, @ \n");
    EXPECT_TRUE(settings.value("draft.bulk").toBool());
}

TEST_F(QSettingsDefaultsFile, IsOnDiskOnceTheLoopHasTurned) {
    QSettingsDefaults defaults(file);
    defaults.setString("draft.kind", "decision");
    EXPECT_EQ(contents(), "");

    QCoreApplication::processEvents();
    EXPECT_EQ(contents(), "[General]\ndraft.kind=decision\n");
}

TEST_F(QSettingsDefaultsFile, IsOnDiskWhenTheObjectIsGone) {
    QSettingsDefaults(file).setString("draft.kind", "decision");

    EXPECT_EQ(contents(), "[General]\ndraft.kind=decision\n");
}

TEST_F(QSettingsDefaultsFile, WritesNothingWhereNothingChanges) {
    QSettingsDefaults defaults(file);
    const auto setAll = [&] {
        defaults.setString("text", "a");
        defaults.setBoolean("flag", false);
        defaults.setBytes("bytes", "b");
        defaults.setStrings("none", {});
        defaults.setStrings("two", {"c", "d"});
    };
    setAll();
    QCoreApplication::processEvents();
    std::filesystem::remove(file);

    setAll();
    QCoreApplication::processEvents();

    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(QSettingsDefaultsFile, AListOfOneTextIsAsItStandsInTheFile) {
    write("[General]\none=a\n");
    QSettingsDefaults defaults(file);
    std::filesystem::remove(file);

    defaults.setStrings("one", {"a"});
    QCoreApplication::processEvents();

    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(QSettingsDefaultsFile, IsTheUsersAloneAlsoAfterRewriting) {
    const auto mask = umask(0);
    {
        QSettingsDefaults defaults(file);
        defaults.setString("api.token", "secret");
        QCoreApplication::processEvents();
        defaults.setString("api.token", "another");
    }
    umask(mask);

    EXPECT_EQ(modeOf(file), 0600u);
    EXPECT_EQ(modeOf(file.parent_path()), 0700u);
}

TEST_F(QSettingsDefaultsFile, WhatCannotBeWrittenIsKeptForTheProcess) {
    std::filesystem::create_directories(folder.path / "config");
    std::ofstream(folder.path / "config" / "com.quorltest.app") << "a file in the folder's place";
    QSettingsDefaults defaults(file);

    defaults.setString("draft.kind", "decision");
    QCoreApplication::processEvents();

    EXPECT_EQ(defaults.string("draft.kind"), "decision");
}

} // namespace
} // namespace quorl::test
