// History and Dataset on a library of 100,000 runs and 50,000 examples, in the program's own window: how long
// it takes until the first frame of the screen, and until the frame that answers a key press in its search
// field; how long the search then goes on; how much memory all that takes.

#include "app/AppModel.h"
#include "app/Workers.h"
#include "decision/Veritor.h"
#include "library/LargeLibrary.h"
#include "platform/linux/DesktopMotion.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/QSettingsWindowState.h"
#include "platform/linux/QtClipboard.h"
#include "screens/DatasetScreen.h"
#include "screens/Graphics.h"
#include "screens/HistoryScreen.h"
#include "screens/MainWindow.h"
#include "screens/RootScreen.h"
#include "store/QuorlStore.h"
#include "store/SupportPaths.h"
#include "transports/DecisionRouter.h"
#include "transports/HTTPSession.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace quorl::bench {

namespace {

constexpr std::size_t runs = 100'000;
constexpr int examples = 50'000;

constexpr std::string_view latin =
    "The refund has to be asked for within thirty days of the delivery, and the "
    "parcel has to come back unopened. Nothing suggests fraud. ";
constexpr std::string_view cyrillic =
    "Возврат нужно запросить в течение тридцати дней после доставки, и посылка "
    "должна вернуться нераспечатанной. ";

class Stopwatch {
public:
    [[nodiscard]] double milliseconds() const {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    }

private:
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

// In megabytes.
double residentMemory() {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        if (word == "VmRSS:") {
            double kilobytes = 0;
            status >> kilobytes;
            return kilobytes / 1024;
        }
    }
    return 0;
}

std::string prose(std::string_view of, std::size_t length, std::size_t number) {
    std::string text = std::to_string(number) + ' ';
    while (text.size() < length)
        text += of;
    return text;
}

// Half of the runs decisions; every tenth text in letters that take their time to fold.
void fill(const std::filesystem::path& file) {
    std::filesystem::copy_file(largeLibrary(runs), file);
    QuorlStore store(file.string());
    store.exec("PRAGMA synchronous = OFF");
    store.exec("BEGIN IMMEDIATE");
    DecisionQuestion question = DecisionQuestion::starter();
    question.name = "return_decision";
    const std::string change = "UPDATE runs SET kind = 'decision', questions_json = '" +
                               Veritor::archive({question}) + "' WHERE rowid % 2 = 0";
    store.exec(change.c_str());
    for (int i = 0; i < examples; ++i) {
        const auto number = static_cast<std::size_t>(i);
        const auto& letters = number % 10 == 0 ? cyrillic : latin;
        DatasetExample example;
        example.id = UUID::random();
        example.createdAt = dateFromSeconds(1'700'000'000.0 + i);
        example.kind = QuorlKind::generation;
        example.prompt = prose(letters, 150, number);
        example.completion = prose(letters, 700, number);
        example.modelName = "Claude Sonnet";
        example.answerID = UUID::random();
        store.insertDataset(example);
    }
    store.exec("COMMIT");
}

class Bench {
public:
    explicit Bench(RootScreen& shown) : screens(shown), main(shown) {
        QObject::connect(&main.window(), &QQuickWindow::frameSwapped, [this] { ++frames; });
        QCoreApplication::processEvents();
        awaitFrame();
    }

    void openScreen(const char* name, RootScreen::Destination destination) {
        const double before = residentMemory();
        const Stopwatch watch;
        screens.goTo(destination);
        QCoreApplication::processEvents();
        awaitFrame();
        std::printf("%s: opened in %.1f ms, %.1f MB\n", name, watch.milliseconds(),
                    residentMemory() - before);
    }

    void press(int key, const QString& text) {
        QKeyEvent down(QEvent::KeyPress, key, {}, text);
        QKeyEvent up(QEvent::KeyRelease, key, {}, text);
        QCoreApplication::sendEvent(&main.window(), &down);
        QCoreApplication::sendEvent(&main.window(), &up);
    }

    // With the keyboard in the search field.
    void search(const char* words, const SearchedListModel& list) {
        const double before = residentMemory();
        for (const char* letter = words; *letter; ++letter) {
            const Stopwatch watch;
            press(0, QString(QLatin1Char(*letter)));
            const double called = watch.milliseconds();
            awaitFrame();
            const double answered = watch.milliseconds();
            while (list.isSearching())
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            std::printf("  \"%c\": on screen in %.1f ms (search %.1f), all found in %.1f ms, %d rows\n",
                        *letter, answered, called, watch.milliseconds(), list.rowCount());
        }
        std::printf("  memory of the search: %.1f MB\n", residentMemory() - before);
        const Stopwatch watch;
        press(Qt::Key_Escape, {});
        awaitFrame();
        std::printf("  emptied in %.1f ms, %d rows\n", watch.milliseconds(), list.rowCount());
    }

    void focusField(const char* name) {
        for (int stops = 0; stops < 30; ++stops) {
            const QQuickItem* item = main.window().activeFocusItem();
            if (item && item->property("placeholderText").toString() == QLatin1String(name))
                return;
            press(Qt::Key_Tab, QStringLiteral("\t"));
        }
        std::printf("  the search field was not found\n");
    }

    void awaitFrame() {
        const int drawn = frames;
        main.window().update();
        while (frames == drawn)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

private:
    RootScreen& screens;
    MainWindow main;
    int frames = 0;
};

void run() {
    LinuxPlatform desktop;
    QtClipboard clipboard;
    DesktopMotion motion(desktop.services.mainThread, desktop.directories.config);
    QSettingsWindowState windowState(windowStateFile(desktop.directories));
    HTTPSession session;
    const DecisionRouter router(session);
    Workers workers;
    AppModel model(desktop.services, router, workers);
    std::printf("the library alone: %.1f MB\n", residentMemory());
    RootScreen screens(model, {.clock = desktop.services.clock,
                               .defaults = desktop.services.defaults,
                               .clipboard = clipboard,
                               .motion = motion,
                               .windowState = windowState});
    Bench bench(screens);

    bench.openScreen("History", RootScreen::Destination::History);
    bench.focusField("Search history");
    auto& history = *qobject_cast<HistoryScreen*>(screens.screen());
    bench.search("return", *history.runs());
    bench.search("e", *history.runs());

    bench.openScreen("Dataset", RootScreen::Destination::Dataset);
    auto& dataset = *qobject_cast<DatasetScreen*>(screens.screen());
    const Stopwatch watch;
    dataset.toggleExamples();
    bench.awaitFrame();
    std::printf("  examples opened in %.1f ms\n", watch.milliseconds());
    bench.focusField("Search examples");
    bench.search("refund", *dataset.examples());
}

} // namespace

} // namespace quorl::bench

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir home;
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
        qputenv(variable, home.path().toUtf8());
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    quorl::chooseRenderer();
    QGuiApplication application(argc, argv);
    const auto folder = quorl::SupportPaths::directory(home.path().toStdString());
    std::filesystem::create_directories(folder);
    quorl::bench::fill(folder / "quorl.sqlite");
    quorl::bench::run();
}
