#pragma once

#include <gtest/gtest.h>

#include <QAccessible>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <memory>
#include <string>

namespace quorl::test {

// A scene of controls in a window. What happens to them a scene writes into its `log`, a word each.
class KitTest : public testing::Test {
protected:
    void open(const char* scene, QSize size = {800, 600}) {
        QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/kit/%1.qml").arg(QLatin1String(scene))));
        ASSERT_TRUE(component.isReady()) << component.errorString().toStdString();
        window.resize(size);
        root.reset(qobject_cast<QQuickItem*>(component.create()));
        root->setParentItem(window.contentItem());
        root->setSize(window.size());
        window.show();
        window.requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        QTest::mouseMove(&window, {1, 1});
        settle();
    }

    void settle() {
        QCoreApplication::processEvents();
        window.grabWindow(); // lays out
        QCoreApplication::processEvents();
    }

    template <class Condition>
    [[nodiscard]] static bool waitFor(Condition isDone) {
        return QTest::qWaitFor(isDone, 20'000);
    }

    template <class Type = QQuickItem>
    Type& find(const char* name) {
        auto* found = root->findChild<Type*>(QLatin1String(name));
        if (!found)
            qFatal("The scene has no %s", name);
        return *found;
    }

    QPoint middle(QQuickItem& item) {
        return item.mapToScene({item.width() / 2, item.height() / 2}).toPoint();
    }

    void click(QQuickItem& item) { clickAt(middle(item)); }
    void clickAt(QPoint place) {
        QTest::mouseClick(&window, Qt::LeftButton, {}, place);
        settle();
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&window, key, modifiers);
        settle();
    }

    void type(const char* text) {
        for (const char* letter = text; *letter; ++letter)
            QTest::keyClick(&window, *letter);
        settle();
    }

    // By Tab, so that the ring is to be seen.
    void tabTo(const char* name) {
        for (int stops = 0; stops < 30; ++stops) {
            if (QQuickItem* item = window.activeFocusItem();
                item && item->objectName() == QLatin1String(name))
                return;
            press(Qt::Key_Tab);
        }
        FAIL() << name << " is no stop of the Tab key";
    }

    bool hasKeys(QQuickItem& item) { return item.hasActiveFocus(); }

    std::string log() { return root->property("log").toString().toStdString(); }
    void clearLog() { root->setProperty("log", QString()); }

    // Closed, and gone from sight.
    static bool isGone(QObject& panel) { return !panel.property("visible").toBool(); }
    static bool isOpen(QObject& panel) { return panel.property("opened").toBool(); }

    static QAccessibleInterface& accessible(QQuickItem& item) {
        return *QAccessible::queryAccessibleInterface(&item);
    }
    static std::string nameOf(QQuickItem& item) {
        return accessible(item).text(QAccessible::Name).toStdString();
    }

    // Who has the keyboard; empty where nobody has.
    std::string keys() {
        QAccessibleInterface* item = QAccessible::queryAccessibleInterface(window.activeFocusItem());
        return item ? item->text(QAccessible::Name).toStdString() : std::string();
    }

    // What shows the text, anywhere in the window.
    QQuickItem* findShown(const char* text) {
        return findBelow(*window.contentItem(), QString::fromUtf8(text));
    }

    QQmlEngine engine;
    QQuickWindow window;
    std::unique_ptr<QQuickItem> root;

private:
    static QQuickItem* findBelow(QQuickItem& item, const QString& text) {
        if (!item.isVisible())
            return nullptr;
        if (item.inherits("QQuickText") && item.property("text").toString() == text)
            return &item;
        for (QQuickItem* child : item.childItems()) {
            if (QQuickItem* found = findBelow(*child, text))
                return found;
        }
        return nullptr;
    }
};

} // namespace quorl::test
