// From the start of a process to the first frame on the screen: a blank Qt Quick window, one with a word in
// it, for which the system's fonts are read and which imports the controls' templates, the program's window
// on a library without runs, and the very first start, which makes the library. Each start is a process of
// its own and the kinds take turns, so that all see the same machine.

#include "app/AppModel.h"
#include "app/Workers.h"
#include "platform/linux/DesktopMotion.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/QSettingsWindowState.h"
#include "platform/linux/QtClipboard.h"
#include "screens/Graphics.h"
#include "screens/MainWindow.h"
#include "screens/RootScreen.h"
#include "transports/DecisionRouter.h"
#include "transports/HTTPSession.h"

#include <QGuiApplication>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr int starts = 15;

std::int64_t microsecondsNow() {
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}

// Ends the process with the first frame. The time goes to standard output.
void reportFirstFrame(const QQuickWindow& window, std::int64_t startedAt) {
    QObject::connect(&window, &QQuickWindow::frameSwapped, [startedAt] {
        std::printf("%lld\n", static_cast<long long>(microsecondsNow() - startedAt));
        std::fflush(stdout);
        std::_Exit(0);
    });
}

constexpr const char* blank = "import QtQuick\nWindow { width: 1240; height: 800; visible: true }";
constexpr const char* word = "import QtQuick\nimport QtQuick.Templates\n"
                             "Window { width: 1240; height: 800; visible: true; Text { text: 'Quorl' } }";

int showQML(const char* source, std::int64_t startedAt) {
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(source, QUrl());
    const std::unique_ptr<QObject> window(component.create());
    reportFirstFrame(*qobject_cast<QQuickWindow*>(window.get()), startedAt);
    return QGuiApplication::exec();
}

int showProgram(std::int64_t startedAt) {
    quorl::LinuxPlatform desktop;
    quorl::QtClipboard clipboard;
    quorl::DesktopMotion motion(desktop.services.mainThread, desktop.directories.config);
    quorl::QSettingsWindowState windowState(quorl::windowStateFile(desktop.directories));
    quorl::HTTPSession session;
    const quorl::DecisionRouter router(session);
    quorl::Workers workers;
    quorl::AppModel model(desktop.services, router, workers);
    quorl::RootScreen screens(model, {.clock = desktop.services.clock,
                                      .defaults = desktop.services.defaults,
                                      .clipboard = clipboard,
                                      .motion = motion,
                                      .windowState = windowState});
    quorl::MainWindow window(screens);
    reportFirstFrame(window.window(), startedAt);
    return QGuiApplication::exec();
}

// Milliseconds.
double measure(const QString& program, const QString& kind, const QTemporaryDir& home) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
        environment.insert(QString::fromLatin1(variable), home.path());
    QProcess child;
    child.setProcessEnvironment(environment);
    child.start(program, {kind, QString::number(microsecondsNow())});
    child.waitForFinished();
    return child.readAllStandardOutput().trimmed().toDouble() / 1000;
}

void report(const char* what, std::vector<double> times) {
    std::sort(times.begin(), times.end());
    std::printf("%-16s median %6.1f ms   fastest %6.1f ms   slowest %6.1f ms\n", what,
                times[times.size() / 2], times.front(), times.back());
}

int compare(const QString& program) {
    const QTemporaryDir home;
    measure(program, QStringLiteral("program"), home); // makes the library
    std::vector<double> empty;
    std::vector<double> worded;
    std::vector<double> later;
    std::vector<double> first;
    for (int start = 0; start < starts; ++start) {
        empty.push_back(measure(program, QStringLiteral("blank"), home));
        worded.push_back(measure(program, QStringLiteral("word"), home));
        later.push_back(measure(program, QStringLiteral("program"), home));
        first.push_back(measure(program, QStringLiteral("program"), QTemporaryDir()));
    }
    report("blank window", empty);
    report("one with a word", worded);
    report("program", later);
    report("its first start", first);
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc < 3) {
        const QCoreApplication application(argc, argv);
        return compare(QCoreApplication::applicationFilePath());
    }
    quorl::forbidBusAutolaunch();
    quorl::chooseRenderer();
    const QGuiApplication application(argc, argv);
    const std::int64_t startedAt = std::atoll(argv[2]);
    const std::string kind = argv[1];
    return kind == "blank"  ? showQML(blank, startedAt)
           : kind == "word" ? showQML(word, startedAt)
                            : showProgram(startedAt);
}
