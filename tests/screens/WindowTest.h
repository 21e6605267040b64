#pragma once

#include "screens/MainWindow.h"
#include "screens/ScreenHarness.h"

#include <QAccessible>
#include <QQuickItem>
#include <QQuickWindow>

namespace quorl::test {

// The window as a person has it: what is on it is found by the name that a screen reader would say.
class WindowTest : public testing::Test {
protected:
    WindowTest() { harness.defaults.setString("draft.kind", "generation"); }

    QQuickWindow& open(QSize size = {1240, 800}) {
        mainWindow = std::make_unique<MainWindow>(harness.show());
        QCoreApplication::processEvents(); // fits it into the screen of the tests, which is a small one
        window().resize(size);
        window().requestActivate();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
        settle();
        return window();
    }

    QQuickWindow& window() { return mainWindow->window(); }

    // Until what has been asked of the loop and of the layout is done.
    void settle() {
        for (int turn = 0; turn < 3; ++turn) {
            harness.loop.runPosted();
            QCoreApplication::processEvents();
            window().grabWindow(); // lays out
        }
    }

    // Until what moves has come to rest.
    template <class Condition>
    static bool waitFor(Condition isDone) {
        return QTest::qWaitFor(isDone, 30'000);
    }

    QQuickItem* find(const QString& name, QAccessible::Role role) {
        return findBelow(*window().contentItem(), name, role);
    }
    QQuickItem* findButton(const char* name) { return find(QString::fromUtf8(name), QAccessible::Button); }
    QQuickItem* findText(const char* text) { return find(QString::fromUtf8(text), QAccessible::StaticText); }
    // Text that can be selected counts as an editor that is only read.
    QQuickItem* findSelectable(const char* text) {
        return find(QString::fromUtf8(text), QAccessible::EditableText);
    }

    void click(QQuickItem* item) {
        ASSERT_NE(item, nullptr);
        const QPointF middle(item->width() / 2, item->height() / 2);
        QTest::mouseClick(&window(), Qt::LeftButton, {}, item->mapToScene(middle).toPoint());
        settle();
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&window(), key, modifiers);
        settle();
    }

    void type(const char* text) {
        for (const char* letter = text; *letter; ++letter)
            QTest::keyClick(&window(), *letter);
        settle();
    }

    // The symbols on an item, as the characters of their font.
    static std::u16string symbolsOn(QQuickItem* item) {
        std::u16string symbols;
        if (!item || !item->isVisible())
            return symbols;
        if (item->property("font").value<QFont>().family() == QStringLiteral("Material Icons"))
            symbols += item->property("text").toString().toStdU16String();
        for (QQuickItem* child : item->childItems())
            symbols += symbolsOn(child);
        return symbols;
    }

    static std::string descriptionOf(QQuickItem* item) {
        QAccessibleInterface* accessible = item ? QAccessible::queryAccessibleInterface(item) : nullptr;
        return accessible ? accessible->text(QAccessible::Description).toStdString() : std::string();
    }

    // From what has the keyboard on, by Tab.
    std::vector<std::string> tabStops(int count) {
        std::vector<std::string> visited{focused()};
        for (int stop = 1; stop < count; ++stop) {
            press(Qt::Key_Tab);
            visited.push_back(focused());
        }
        return visited;
    }

    std::string focused() {
        QQuickItem* item = window().activeFocusItem();
        return item ? nameOf(*item).toStdString() : std::string();
    }

    // A question to those models, asked and answered.
    void compare(const char* question = "Why?") {
        type(question);
        press(Qt::Key_Return, Qt::ControlModifier);
        ASSERT_TRUE(harness.answered());
        settle();
    }

    ModelProfile addChosenModel(const std::string& name) {
        const ModelProfile model = harness.addReadyModel(name, sortIndex++);
        chosen.push_back(model.id.text());
        harness.defaults.setStrings("draft.models", chosen);
        return model;
    }

    // A window on a decision of which nothing is written yet.
    void openDecision() {
        harness.defaults.setString("draft.kind", "decision");
        open();
    }

    // By Tab, from the field before it.
    void write(const char* field, const char* text) {
        for (int stops = 0; focused() != field && stops < 30; ++stops)
            press(Qt::Key_Tab);
        ASSERT_EQ(focused(), field);
        type(text);
    }

    const DecisionQuestion& draftQuestion(std::size_t place = 0) {
        return harness.model().draftQuestions->at(place);
    }

    ScreenHarness harness;

private:
    static QString nameOf(QQuickItem& item) {
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&item);
        return accessible ? accessible->text(QAccessible::Name) : QString();
    }

    static QQuickItem* findBelow(QQuickItem& item, const QString& name, QAccessible::Role role) {
        if (!item.isVisible())
            return nullptr;
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&item);
        if (accessible && accessible->role() == role && accessible->text(QAccessible::Name) == name)
            return &item;
        for (QQuickItem* child : item.childItems()) {
            if (QQuickItem* found = findBelow(*child, name, role))
                return found;
        }
        return nullptr;
    }

    std::unique_ptr<MainWindow> mainWindow;
    std::vector<std::string> chosen;
    std::int64_t sortIndex = 0;
};

} // namespace quorl::test
