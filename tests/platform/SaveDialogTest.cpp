#include "platform/linux/SaveDialog.h"

#include "support/Fakes.h"
#include "support/TempFolder.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QUrl>
#include <QVariant>

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace quorl::test {

namespace {

class SaveDialogTest : public testing::Test {
protected:
    SaveDialogTest() {
        QQmlComponent component(&engine);
        component.setData("import QtQuick\nWindow { width: 600; height: 400; visible: true }", QUrl());
        window.reset(qobject_cast<QQuickWindow*>(component.create()));
        dialog = std::make_unique<SaveDialog>(*window, defaults);
    }

    void ask(const std::string& name = "quorl-scores.csv") {
        dialog->chooseTarget(name, {"Comma-separated values", "csv"}, [this](const auto& target) {
            ++answers;
            answer = target;
        });
    }

    // Null until the dialog has been loaded.
    [[nodiscard]] QObject* shown() const { return window->findChild<QObject*>("saveDialog"); }

    [[nodiscard]] std::string fileShown(const char* property) const {
        return shown()->property(property).toUrl().toLocalFile().toStdString();
    }

    void press(const char* button) const { QMetaObject::invokeMethod(shown(), button); }

    // Of Qt Quick's dialog, which the tests get: there is no desktop.
    [[nodiscard]] QQuickItem* findShown(const char* property, const char* value) const {
        return findBelow(*window->contentItem(), property, QString::fromUtf8(value));
    }

    void click(const QQuickItem* item) const {
        ASSERT_NE(item, nullptr);
        const QPointF middle(item->width() / 2, item->height() / 2);
        QTest::mouseClick(window.get(), Qt::LeftButton, {}, item->mapToScene(middle).toPoint());
    }

    void typeName(const char* name) const {
        ASSERT_TRUE(
            QTest::qWaitFor([this] { return findShown("objectName", "fileNameTextField") != nullptr; }));
        click(findShown("objectName", "fileNameTextField"));
        QTest::keyClick(window.get(), Qt::Key_A, Qt::ControlModifier);
        for (const char* letter = name; *letter; ++letter)
            QTest::keyClick(window.get(), *letter);
    }

    static QQuickItem* findBelow(QQuickItem& item, const char* property, const QString& value) {
        if (item.isVisible() && item.property(property).toString() == value)
            return &item;
        for (QQuickItem* child : item.childItems()) {
            if (QQuickItem* found = findBelow(*child, property, value))
                return found;
        }
        return nullptr;
    }

    TempFolder folder;
    FakeDefaults defaults;
    QQmlEngine engine;
    std::unique_ptr<QQuickWindow> window;
    std::unique_ptr<SaveDialog> dialog;
    int answers = 0;
    std::optional<std::filesystem::path> answer;
};

TEST_F(SaveDialogTest, NothingIsLoadedBeforeItIsAskedFor) {
    EXPECT_EQ(shown(), nullptr);
}

TEST_F(SaveDialogTest, ItProposesTheNameAndTakesTheTypeAlone) {
    defaults.setString("export.folder", folder.path().string());

    ask();

    ASSERT_NE(shown(), nullptr);
    EXPECT_EQ(answers, 0);
    EXPECT_EQ(fileShown("selectedFile"), (folder.path() / "quorl-scores.csv").string());
    EXPECT_EQ(fileShown("currentFolder"), folder.path().string());
    EXPECT_EQ(shown()->property("nameFilters").toStringList(), QStringList{"Comma-separated values (*.csv)"});
    EXPECT_EQ(shown()->property("defaultSuffix").toString(), "csv");
}

TEST_F(SaveDialogTest, WhatIsChosenIsAnsweredOnceAndItsFolderRemembered) {
    defaults.setString("export.folder", folder.path().string());
    ask();

    press("accept");

    EXPECT_EQ(answers, 1);
    EXPECT_EQ(answer, folder.path() / "quorl-scores.csv");
    EXPECT_EQ(defaults.string("export.folder"), folder.path().string());
}

TEST_F(SaveDialogTest, ANameThatIsTypedIsWhereTheFileGoes) {
    defaults.setString("export.folder", folder.path().string());
    ask();

    typeName("my scores #1.csv");
    click(findShown("text", "Save"));

    EXPECT_EQ(answers, 1);
    EXPECT_EQ(answer, folder.path() / "my scores #1.csv");
    EXPECT_EQ(defaults.string("export.folder"), folder.path().string());
}

TEST_F(SaveDialogTest, ANameWithoutAnEndingGetsThatOfTheType) {
    defaults.setString("export.folder", folder.path().string());
    ask();

    typeName("scores");
    click(findShown("text", "Save"));

    EXPECT_EQ(answer, folder.path() / "scores.csv");
}

TEST_F(SaveDialogTest, TheNextOneOpensWhereTheLastFileWasSaved) {
    const auto other = folder.path() / "other";
    std::filesystem::create_directory(other);
    defaults.setString("export.folder", folder.path().string());
    ask("other/mine.csv"); // as if the user had gone down into it
    press("accept");
    ASSERT_EQ(answer, other / "mine.csv");

    ask();
    EXPECT_EQ(fileShown("currentFolder"), other.string());
    EXPECT_EQ(fileShown("selectedFile"), (other / "quorl-scores.csv").string());
    press("reject");

    dialog.reset();
    dialog = std::make_unique<SaveDialog>(*window, defaults); // after a restart
    ask();
    EXPECT_EQ(fileShown("currentFolder"), other.string());
}

TEST_F(SaveDialogTest, AFileThatIsThereIsReplacedOnlyOnAYes) {
    defaults.setString("export.folder", folder.path().string());
    std::ofstream(folder.path() / "quorl-scores.csv") << "before";
    ask();

    click(findShown("text", "Save"));
    auto* question = window->findChild<QObject*>("replaceDialog");
    ASSERT_NE(question, nullptr);
    EXPECT_EQ(question->property("text").toString(), QStringLiteral("Replace “quorl-scores.csv”?"));
    EXPECT_EQ(answers, 0);

    ASSERT_TRUE(QTest::qWaitFor([this] { return findShown("text", "No") != nullptr; }));
    click(findShown("text", "No")); // and the place can be chosen anew
    ASSERT_TRUE(QTest::qWaitFor([this] { return findShown("text", "Save") != nullptr; }));
    EXPECT_EQ(answers, 0);
    click(findShown("text", "Save"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return findShown("text", "Yes") != nullptr; }));
    click(findShown("text", "Yes"));

    EXPECT_EQ(answers, 1);
    EXPECT_EQ(answer, folder.path() / "quorl-scores.csv");
}

TEST_F(SaveDialogTest, CancellingAnswersNothingAndItCanBeAskedAgain) {
    ask();
    press("reject");
    EXPECT_EQ(answers, 1);
    EXPECT_EQ(answer, std::nullopt);

    ask("quorl-dataset.jsonl");
    press("reject");
    EXPECT_EQ(answers, 2);
    EXPECT_EQ(defaults.string("export.folder"), std::nullopt);
}

TEST_F(SaveDialogTest, WhileItIsOpenASecondQuestionIsAnsweredWithNothing) {
    ask();
    ask();

    EXPECT_EQ(answers, 1);
    EXPECT_EQ(answer, std::nullopt);
}

TEST_F(SaveDialogTest, AFolderThatIsGoneIsNotOpened) {
    const auto gone = folder.path() / "gone";
    defaults.setString("export.folder", gone.string());

    ask();

    EXPECT_NE(fileShown("currentFolder"), gone.string());
}

} // namespace

} // namespace quorl::test

// The application ends with main: behind it, with the static objects, the dialog's style would outlive what
// it is made of.
int main(int argc, char* argv[]) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
