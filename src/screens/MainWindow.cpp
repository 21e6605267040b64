#include "screens/MainWindow.h"

#include "screens/RootScreen.h"

#include <QIcon>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

namespace quorl {

namespace {

QIcon windowIcon() {
    QIcon icon;
    for (const int size : {16, 32, 64, 256})
        icon.addFile(QStringLiteral(":/qt-project.org/imports/Quorl/icons/mark-%1.png").arg(size),
                     QSize(size, size));
    return icon;
}

} // namespace

MainWindow::MainWindow(RootScreen& screens) : engine(std::make_unique<QQmlEngine>()) {
    screens.motion().provideTo(*engine);
    QQmlComponent component(engine.get(),
                            QUrl(QStringLiteral("qrc:/qt-project.org/imports/Quorl/qml/Main.qml")));
    quickWindow.reset(qobject_cast<QQuickWindow*>(
        component.createWithInitialProperties({{QStringLiteral("screens"), QVariant::fromValue(&screens)}})));
    if (!quickWindow)
        qFatal("%s", qUtf8Printable(component.errorString()));
    // Reading a picture loads every picture format of Qt's first, and the window can be seen without.
    QObject::connect(
        quickWindow.get(), &QQuickWindow::frameSwapped, quickWindow.get(),
        [this] { quickWindow->setIcon(windowIcon()); },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

MainWindow::~MainWindow() = default;

} // namespace quorl
