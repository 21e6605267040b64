#pragma once

#include "platform/Platform.h"

#include <QTimer>

#include <memory>

class QQmlEngine;
class QQuickWindow;

namespace quorl {

class RootScreen;

// The program's window, shown as soon as it is made, where the user has left it. Thread: main. Failures: a
// window that cannot be made ends the program, for its files are part of it.
class MainWindow {
public:
    /// `screens` is borrowed and must outlive the window.
    explicit MainWindow(RootScreen& screens);
    ~MainWindow();

    [[nodiscard]] QQuickWindow& window() { return *quickWindow; }

    /// Keeps where the window stands, which also happens by itself a moment after it was moved.
    void saveFrame();

private:
    void make(RootScreen& screens);
    void setIconAfterFirstFrame();
    void bringIntoSight();
    void watchFrame();

    std::unique_ptr<QQmlEngine> engine;
    std::unique_ptr<QQuickWindow> quickWindow; // goes before its engine
    WindowState& state;
    QTimer untilItRests;
};

} // namespace quorl
