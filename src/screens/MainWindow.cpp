#include "screens/MainWindow.h"

#include "screens/RootScreen.h"
#include "screens/WindowPlacement.h"

#include <QIcon>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QScreen>

namespace quorl {

namespace {

QIcon windowIcon() {
    QIcon icon;
    for (const int size : {16, 32, 64, 256})
        icon.addFile(QStringLiteral(":/qt-project.org/imports/Quorl/icons/mark-%1.png").arg(size),
                     QSize(size, size));
    return icon;
}

QRect toRect(const WindowFrame& frame) {
    return {frame.x, frame.y, frame.width, frame.height};
}

WindowFrame toFrame(const QRect& rect) {
    return {rect.x(), rect.y(), rect.width(), rect.height()};
}

WindowFrame visibleFrame(const QWindow& window) {
    return window.screen() ? toFrame(window.screen()->availableGeometry())
                           : WindowPlacement::frameWithoutScreen;
}

} // namespace

MainWindow::MainWindow(RootScreen& screens)
    : engine(std::make_unique<QQmlEngine>()), state(screens.windowState()) {
    screens.motion().provideTo(*engine);
    make(screens);
    setIconAfterFirstFrame();
    QMetaObject::invokeMethod(
        quickWindow.get(), [this] { bringIntoSight(); }, Qt::QueuedConnection);
    watchFrame();
}

MainWindow::~MainWindow() = default;

void MainWindow::make(RootScreen& screens) {
    QQmlComponent component(engine.get(),
                            QUrl(QStringLiteral("qrc:/qt-project.org/imports/Quorl/qml/Main.qml")));
    QVariantMap properties{
        {QStringLiteral("screens"), QVariant::fromValue(&screens)},
        {QStringLiteral("width"), WindowPlacement::defaultWidth},
        {QStringLiteral("height"), WindowPlacement::defaultHeight},
        {QStringLiteral("minimumWidth"), WindowPlacement::minimumWidth},
        {QStringLiteral("minimumHeight"), WindowPlacement::minimumHeight},
    };
    if (const auto frame = state.frame()) {
        properties[QStringLiteral("x")] = frame->x;
        properties[QStringLiteral("y")] = frame->y;
        properties[QStringLiteral("width")] = frame->width;
        properties[QStringLiteral("height")] = frame->height;
    }
    if (component.isReady())
        quickWindow.reset(qobject_cast<QQuickWindow*>(component.createWithInitialProperties(properties)));
    if (!quickWindow)
        qFatal("%s", qUtf8Printable(component.errorString()));
}

// Reading a picture loads every picture format of Qt's first, and the window can be seen without.
void MainWindow::setIconAfterFirstFrame() {
    QObject::connect(
        quickWindow.get(), &QQuickWindow::frameSwapped, quickWindow.get(),
        [this] { quickWindow->setIcon(windowIcon()); },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

void MainWindow::bringIntoSight() {
    const auto repaired =
        WindowPlacement::repaired(toFrame(quickWindow->geometry()), visibleFrame(*quickWindow));
    if (repaired)
        quickWindow->setGeometry(toRect(*repaired));
}

// A window that is dragged moves with every pixel.
void MainWindow::watchFrame() {
    using namespace std::chrono_literals;
    untilItRests.setSingleShot(true);
    untilItRests.setInterval(500ms);
    QObject::connect(&untilItRests, &QTimer::timeout, quickWindow.get(), [this] { saveFrame(); });
    QObject::connect(quickWindow.get(), &QWindow::visibleChanged, &untilItRests, [this] { saveFrame(); });
    for (const auto moved :
         {&QWindow::xChanged, &QWindow::yChanged, &QWindow::widthChanged, &QWindow::heightChanged})
        QObject::connect(quickWindow.get(), moved, &untilItRests, [this] { untilItRests.start(); });
}

// One that fills the screen keeps the frame that it had before.
void MainWindow::saveFrame() {
    untilItRests.stop();
    if (quickWindow->windowStates() == Qt::WindowNoState)
        state.setFrame(toFrame(quickWindow->geometry()));
}

} // namespace quorl
