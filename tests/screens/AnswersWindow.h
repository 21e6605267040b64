#pragma once

#include <QAccessible>
#include <QCoreApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <memory>

namespace quorl::test {

// A window around a part of the screens, as a person has it: what is on it is found by the name that a screen
// reader would say, and worked by key and mouse.
class AnswersWindow {
public:
    /// `qml` is the content of a window whose models are passed by their property names.
    void open(const QByteArray& qml, const QVariantMap& models, QSize size) {
        QQmlComponent component(&engine);
        component.setData("import QtQuick\nimport Quorl\n" + qml, QUrl(QStringLiteral("qrc:/Scene.qml")));
        window.reset(qobject_cast<QQuickWindow*>(component.createWithInitialProperties(models)));
        ASSERT_TRUE(window) << component.errorString().toStdString();
        window->resize(size);
        window->show();
        window->requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        settle();
    }

    /// Until what has been asked of the loop and of the layout is done.
    void settle() {
        for (int turn = 0; turn < 3; ++turn) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            window->grabWindow(); // lays out
        }
    }

    QQuickItem* find(const char* name, QAccessible::Role role, int nth = 0) {
        return findBelow(*window->contentItem(), QString::fromUtf8(name), role, nth);
    }
    QQuickItem* button(const char* name, int nth = 0) { return find(name, QAccessible::Button, nth); }
    QQuickItem* menuButton(const char* name) { return find(name, QAccessible::ButtonMenu); }
    QQuickItem* entry(const char* name) { return find(name, QAccessible::MenuItem); }
    QQuickItem* text(const char* words) { return find(words, QAccessible::StaticText); }
    // Text that can be selected counts as an editor that is only read.
    QQuickItem* selectable(const char* words) { return find(words, QAccessible::EditableText); }

    void click(QQuickItem* item) {
        ASSERT_NE(item, nullptr);
        QTest::mouseClick(window.get(), Qt::LeftButton, {}, middleOf(*item));
        settle();
    }

    /// An entry of the menu that is open, which then fades.
    void choose(const char* name) {
        click(entry(name));
        ASSERT_TRUE(waitFor([&] { return entry(name) == nullptr; }));
        settle();
    }

    void hover(QQuickItem* item) {
        ASSERT_NE(item, nullptr);
        QTest::mouseMove(window.get(), middleOf(*item));
        settle();
    }

    /// By notches, away from the user where negative.
    void turnWheel(QQuickItem* item, int notches) {
        ASSERT_NE(item, nullptr);
        const QPointF place = middleOfShown(*item);
        QWheelEvent event(place, window->mapToGlobal(place), {}, {0, notches * 120}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(window.get(), &event);
        settle();
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(window.get(), key, modifiers);
        settle();
    }

    void type(const char* letters) {
        for (const char* letter = letters; *letter; ++letter)
            QTest::keyClick(window.get(), *letter);
        settle();
    }

    /// Until it is so, for what takes its time on the screen.
    template <class Condition>
    [[nodiscard]] bool waitFor(Condition isSo) {
        return QTest::qWaitFor(isSo, 10'000);
    }

    std::string focused() {
        QQuickItem* const item = window->activeFocusItem();
        return item ? nameOf(*item).toStdString() : std::string();
    }

    static QString descriptionOf(QQuickItem& item) {
        return QAccessible::queryAccessibleInterface(&item)->text(QAccessible::Description);
    }

private:
    static QPoint middleOf(QQuickItem& item) {
        return item.mapToScene({item.width() / 2, item.height() / 2}).toPoint();
    }

    // Of what lies inside the window.
    QPointF middleOfShown(QQuickItem& item) {
        const QRectF inScene = item.mapRectToScene({0, 0, item.width(), item.height()});
        return inScene.intersected({{0, 0}, QSizeF(window->size())}).center();
    }

    static QString nameOf(QQuickItem& item) {
        QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(&item);
        return accessible ? accessible->text(QAccessible::Name) : QString();
    }

    static QQuickItem* findBelow(QQuickItem& item, const QString& name, QAccessible::Role role, int& nth) {
        if (!item.isVisible())
            return nullptr;
        QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(&item);
        if (accessible && accessible->role() == role && accessible->text(QAccessible::Name) == name &&
            nth-- == 0)
            return &item;
        for (QQuickItem* child : item.childItems()) {
            if (QQuickItem* found = findBelow(*child, name, role, nth))
                return found;
        }
        return nullptr;
    }

    QQmlEngine engine;

public:
    std::unique_ptr<QQuickWindow> window; // goes before its engine
};

} // namespace quorl::test
