#pragma once

#include <memory>

class QQmlEngine;
class QQuickWindow;

namespace quorl {

class RootScreen;

// The program's window, shown as soon as it is made. Thread: main. Failures: a window that cannot be made
// ends the program, for its files are part of it.
class MainWindow {
public:
    /// `screens` is borrowed and must outlive the window.
    explicit MainWindow(RootScreen& screens);
    ~MainWindow();

    [[nodiscard]] QQuickWindow& window() { return *quickWindow; }

private:
    std::unique_ptr<QQmlEngine> engine;
    std::unique_ptr<QQuickWindow> quickWindow; // goes before its engine
};

} // namespace quorl
