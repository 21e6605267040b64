#include "screens/Motion.h"

#include "support/Fakes.h"

#include <gtest/gtest.h>

#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>

namespace quorl::test {
namespace {

constexpr auto key = "quorl.motion.preference";

enum Place { System, Reduced, Full };

TEST(Motion, PreferencesAreKeptUnderTheseWords) {
    for (const auto& [preference, word] :
         {std::pair(MotionPreference::system, "system"), std::pair(MotionPreference::reduced, "reduced"),
          std::pair(MotionPreference::full, "full")}) {
        EXPECT_EQ(rawValue(preference), word);
        EXPECT_EQ(motionPreference(word), preference);
    }
    EXPECT_EQ(motionPreference("System"), std::nullopt);
    EXPECT_EQ(motionPreference(""), std::nullopt);
}

TEST(Motion, TitlesStandInOrder) {
    EXPECT_EQ(Motion::titles(),
              QStringList({QStringLiteral("System setting"), QStringLiteral("Reduced motion"),
                           QStringLiteral("Full motion")}));
}

TEST(Motion, WithoutAPreferenceTheDesktopDecides) {
    FakeDefaults defaults;
    Motion motion(defaults);

    EXPECT_EQ(motion.preference(), System);
    EXPECT_TRUE(motion.isAllowed());
    motion.setReducedBySystem(true);
    EXPECT_FALSE(motion.isAllowed());
    EXPECT_TRUE(defaults.writes.empty());
}

TEST(Motion, APreferenceForOneOrTheOtherOverrulesTheDesktop) {
    FakeDefaults defaults;
    Motion motion(defaults);

    motion.choose(Reduced);
    EXPECT_FALSE(motion.isAllowed());

    motion.setReducedBySystem(true);
    motion.choose(Full);
    EXPECT_TRUE(motion.isAllowed());
}

TEST(Motion, TheChoiceIsKept) {
    FakeDefaults defaults;
    Motion(defaults).choose(Reduced);

    EXPECT_EQ(defaults.string(key), "reduced");
    EXPECT_EQ(Motion(defaults).preference(), Reduced);
}

TEST(Motion, AnUnknownPreferenceIsMarkedNowhereAndActsAsTheSystemSetting) {
    FakeDefaults defaults;
    defaults.setString(key, "wild");
    Motion motion(defaults);

    EXPECT_EQ(motion.preference(), -1);
    EXPECT_TRUE(motion.isAllowed());
    motion.setReducedBySystem(true);
    EXPECT_FALSE(motion.isAllowed());
    EXPECT_EQ(defaults.string(key), "wild");

    motion.choose(System);
    EXPECT_EQ(motion.preference(), System);
    EXPECT_EQ(defaults.string(key), "system");
}

TEST(Motion, OnlyWhatDiffersIsToldAndWritten) {
    FakeDefaults defaults;
    Motion motion(defaults);
    const QSignalSpy changes(&motion, &Motion::changed);

    motion.choose(System);
    motion.setReducedBySystem(false);
    EXPECT_EQ(changes.count(), 0);

    motion.choose(Full);
    motion.choose(Full);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(defaults.writes, std::vector<std::string>{key});
}

TEST(Motion, QMLReadsTheOneThatItsEngineWasGiven) {
    FakeDefaults defaults;
    Motion motion(defaults);
    motion.choose(Reduced);
    QQmlEngine engine;
    motion.provideTo(engine);

    QQmlComponent component(&engine);
    component.setData("import QtQuick\nimport Quorl\nQtObject { property bool moves: Motion.isAllowed }", {});
    const std::unique_ptr<QObject> object(component.create());

    ASSERT_NE(object, nullptr) << component.errorString().toStdString();
    EXPECT_FALSE(object->property("moves").toBool());
    motion.choose(Full);
    EXPECT_TRUE(object->property("moves").toBool());
}

TEST(Motion, AnEngineThatWasGivenNoneHasOneOfItsOwn) {
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQuick\nimport Quorl\nQtObject { property bool moves: Motion.isAllowed }", {});
    const std::unique_ptr<QObject> object(component.create());

    ASSERT_NE(object, nullptr) << component.errorString().toStdString();
    EXPECT_TRUE(object->property("moves").toBool());
}

} // namespace
} // namespace quorl::test
