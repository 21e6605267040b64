// The screens that list everything, on a library of 100,000 runs, 50,000 examples and 1,000 batches and, in
// the same run, on one of 1,000 runs: how long each takes from the start, from a click or from a key to
// the frame that shows it, how long a search goes on behind that frame, and how much memory there is then.

#include "app/AppModel.h"
#include "app/Workers.h"
#include "decision/Veritor.h"
#include "library/LargeLibrary.h"
#include "platform/linux/DesktopMotion.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/QSettingsWindowState.h"
#include "platform/linux/QtClipboard.h"
#include "screens/BatchesScreen.h"
#include "screens/DatasetScreen.h"
#include "screens/Graphics.h"
#include "screens/HistoryScreen.h"
#include "screens/MainWindow.h"
#include "screens/RootScreen.h"
#include "screens/ScoresScreen.h"
#include "store/QuorlStore.h"
#include "store/SupportPaths.h"
#include "transports/DecisionRouter.h"
#include "transports/HTTPSession.h"

#include <QDebug>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace quorl::bench {

namespace {

struct Size {
    std::size_t runs;
    int examples;
    int batches;
};

constexpr Size smallSize{1'000, 10, 10};
constexpr Size largeSize{100'000, 50'000, 1'000};

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

    // Of the processor, all threads together: what does not depend on what else the machine does.
    [[nodiscard]] double processorMilliseconds() const {
        return static_cast<double>(std::clock() - processorStart) * 1000.0 / CLOCKS_PER_SEC;
    }

private:
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    std::clock_t processorStart = std::clock();
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

void addExamples(QuorlStore& store, int examples) {
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
}

// The last runs in as many batches of programs as are wanted: 200 in the newest, nine in each of the others.
void addBatches(QuorlStore& store, const Size& size) {
    std::size_t first = size.runs - 199 - 9 * static_cast<std::size_t>(size.batches - 1);
    for (int i = 0; i < size.batches; ++i) {
        QuorlBatch batch;
        batch.id = UUID::random();
        batch.name = "Nightly " + std::to_string(i);
        batch.source = RunOrigin::api;
        batch.kind = QuorlKind::generation;
        batch.createdAt = dateFromSeconds(1'700'000'000.0 + i);
        batch.status = BatchStatus::done;
        store.saveBatch(batch);
        const std::size_t last = i == size.batches - 1 ? size.runs : first + 8;
        const std::string change = "UPDATE runs SET batch_id = '" + batch.id.text() +
                                   "' WHERE rowid BETWEEN " + std::to_string(first) + " AND " +
                                   std::to_string(last);
        store.exec(change.c_str());
        first = last + 1;
    }
}

// Half of the runs decisions; every tenth example in letters that take their time to fold.
void fill(const std::filesystem::path& file, const Size& size) {
    std::filesystem::copy_file(largeLibrary(size.runs), file);
    QuorlStore store(file.string());
    store.exec("PRAGMA synchronous = OFF");
    store.exec("BEGIN IMMEDIATE");
    DecisionQuestion question = DecisionQuestion::starter();
    question.name = "return_decision";
    const std::string change = "UPDATE runs SET kind = 'decision', questions_json = '" +
                               Veritor::archive({question}) + "' WHERE rowid % 2 = 0";
    store.exec(change.c_str());
    store.exec("DELETE FROM batches");
    addBatches(store, size);
    addExamples(store, size.examples);
    store.exec("COMMIT");
}

// Puts every file into one folder, unasked.
class FolderSaver : public FileSaver {
public:
    explicit FolderSaver(std::filesystem::path target) : folder(std::move(target)) {}

    void chooseTarget(const std::string& name, const FileType&, Chosen chosen) override {
        chosen(folder / name);
    }

private:
    std::filesystem::path folder;
};

// What was measured: milliseconds, on the clock and of the processor, or megabytes where the name says so.
struct Figure {
    std::string what;
    double figure = 0;
    double processor = 0;
};

using Figures = std::vector<Figure>; // in the order in which they were measured

class Bench {
public:
    Bench(RootScreen& shown, Figures& measured) : figures(measured), main(shown) {
        QObject::connect(&main.window(), &QQuickWindow::frameSwapped, [this] { ++frames; });
        QCoreApplication::processEvents();
        awaitFrame();
    }

    void note(const std::string& what, double figure, double processor = 0) {
        figures.push_back({what, figure, processor});
    }
    void note(const std::string& what, const Stopwatch& watch) {
        note(what, watch.milliseconds(), watch.processorMilliseconds());
    }

    template <class Action>
    void time(const std::string& what, Action action) {
        const Stopwatch watch;
        action();
        QCoreApplication::processEvents();
        awaitFrame();
        note(what, watch);
    }

    void press(int key, const QString& text = {}) {
        QKeyEvent down(QEvent::KeyPress, key, {}, text);
        QKeyEvent up(QEvent::KeyRelease, key, {}, text);
        QCoreApplication::sendEvent(&main.window(), &down);
        QCoreApplication::sendEvent(&main.window(), &up);
    }

    // With the keyboard in the search field: the slowest letter counts.
    void search(const std::string& where, const char* words, const SearchedListModel& list) {
        Figure onScreen{where + ": a letter of a search"};
        Figure allFound{where + ": until all is found"};
        for (const char* letter = words; *letter; ++letter) {
            const Stopwatch watch;
            press(0, QString(QLatin1Char(*letter)));
            awaitFrame();
            keepSlowest(onScreen, watch);
            while (list.isSearching())
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            keepSlowest(allFound, watch);
        }
        figures.push_back(onScreen);
        figures.push_back(allFound);
        time(where + ": the search emptied", [this] { press(Qt::Key_Escape); });
    }

    // With the keyboard in a list: the slowest frame counts.
    void pressThrough(const std::string& what, int key, int times) {
        Figure slowest{what};
        for (int i = 0; i < times; ++i) {
            const Stopwatch watch;
            press(key);
            QCoreApplication::processEvents();
            awaitFrame();
            keepSlowest(slowest, watch);
        }
        figures.push_back(slowest);
    }

    // By Tab, from where the keyboard is.
    template <class Condition>
    void tabTo(Condition isThere) {
        for (int stops = 0; stops < 30; ++stops) {
            press(Qt::Key_Tab, QStringLiteral("\t"));
            awaitFrame(); // what opens has to be there first
            const QQuickItem* item = main.window().activeFocusItem();
            if (item && isThere(*item))
                return;
        }
        std::printf("  the keyboard stopped at %s\n",
                    qPrintable(QDebug::toString(main.window().activeFocusItem())));
    }
    void tabToField(const char* placeholder) {
        tabTo([placeholder](const QQuickItem& item) {
            return item.property("placeholderText").toString() == QLatin1String(placeholder);
        });
    }

    void awaitFrame() {
        const int drawn = frames;
        main.window().update();
        while (frames == drawn)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

private:
    static void keepSlowest(Figure& figure, const Stopwatch& watch) {
        figure.figure = std::max(figure.figure, watch.milliseconds());
        figure.processor = std::max(figure.processor, watch.processorMilliseconds());
    }

    Figures& figures;
    MainWindow main;
    int frames = 0;
};

void runHistory(Bench& bench, RootScreen& screens) {
    bench.time("History: opened", [&] { screens.goTo(RootScreen::Destination::History); });
    bench.tabToField("Search history");
    auto& history = *qobject_cast<HistoryScreen*>(screens.screen());
    bench.search("History", "return", *history.runs());
    bench.press(Qt::Key_Tab, QStringLiteral("\t"));
    bench.pressThrough("History: a page down", Qt::Key_PageDown, 40);
    bench.pressThrough("History: to the end", Qt::Key_End, 1);
}

void runDataset(Bench& bench, RootScreen& screens) {
    bench.time("Dataset: opened", [&] { screens.goTo(RootScreen::Destination::Dataset); });
    auto& dataset = *qobject_cast<DatasetScreen*>(screens.screen());
    bench.time("Dataset: examples opened", [&] { dataset.toggleExamples(); });
    bench.tabToField("Search examples");
    bench.search("Dataset", "refund", *dataset.examples());
    bench.press(Qt::Key_Tab, QStringLiteral("\t"));
    bench.pressThrough("Dataset: a page down", Qt::Key_PageDown, 40);
    bench.time("Dataset: exported", [&] { dataset.exportAll(); });
}

void runScores(Bench& bench, RootScreen& screens) {
    bench.time("Performance: opened", [&] { screens.goTo(RootScreen::Destination::Scores); });
    auto& scores = *qobject_cast<ScoresScreen*>(screens.screen());
    const QString category = scores.categories().at(1).toMap()[QStringLiteral("value")].toString();
    bench.time("Performance: a category chosen", [&] { scores.setFilter(category); });
    bench.time("Performance: all chosen", [&] { scores.setFilter({}); });
    bench.time("Performance: a column sorted", [&] { scores.byCategory()->sortBy(ScoreTableModel::Time); });
    bench.time("Performance: exported", [&] { scores.exportCSV(); });
}

void runBatches(Bench& bench, RootScreen& screens) {
    bench.time("Batches: opened", [&] { screens.goTo(RootScreen::Destination::Batches); });
    auto& batches = *qobject_cast<BatchesScreen*>(screens.screen());
    bench.time("Batches: one of 200 items opened", [&] { batches.select(0); });
    bench.time("Batches: one of 9 items opened", [&] { batches.select(1); });
    bench.tabTo([](const QQuickItem& item) { return item.property("isSelected").isValid(); });
    bench.pressThrough("Batches: the next batch", Qt::Key_Down, 40);
}

Figures run(const std::filesystem::path& folder) {
    Figures figures;
    const double before = residentMemory();
    const Stopwatch start;
    LinuxPlatform desktop;
    QtClipboard clipboard;
    DesktopMotion motion(desktop.services.mainThread, desktop.directories.config);
    QSettingsWindowState windowState(windowStateFile(desktop.directories));
    HTTPSession session;
    const DecisionRouter router(session);
    Workers workers;
    AppModel model(desktop.services, router, workers);
    RootScreen screens(model, {.clock = desktop.services.clock,
                               .defaults = desktop.services.defaults,
                               .clipboard = clipboard,
                               .motion = motion,
                               .windowState = windowState});
    FolderSaver saver(folder);
    screens.setFileSaver(saver);
    Bench bench(screens, figures);
    bench.note("Start, to the first frame", start);
    bench.note("Memory after it (MB)", residentMemory() - before);
    runHistory(bench, screens);
    runDataset(bench, screens);
    runScores(bench, screens);
    runBatches(bench, screens);
    bench.note("Memory at the end (MB)", residentMemory() - before);
    return figures;
}

Figures runWith(const Size& size) {
    const QTemporaryDir home;
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
        qputenv(variable, home.path().toUtf8());
    const auto folder = SupportPaths::directory(home.path().toStdString());
    std::filesystem::create_directories(folder);
    fill(folder / "quorl.sqlite", size);
    return run(home.path().toStdString());
}

void report(const Figures& ofSmall, const Figures& ofLarge) {
    std::printf("%-36s %20s %20s %8s\n", "", "small, processor", "large, processor", "ratio");
    for (std::size_t i = 0; i < ofSmall.size(); ++i) {
        const Figure& small = ofSmall[i];
        const Figure& large = ofLarge[i];
        std::printf("%-36s %11.1f %8.1f %11.1f %8.1f %8.2f\n", small.what.c_str(), small.figure,
                    small.processor, large.figure, large.processor, large.figure / small.figure);
    }
}

} // namespace

} // namespace quorl::bench

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    quorl::chooseRenderer();
    QGuiApplication application(argc, argv);
    static_cast<void>(
        quorl::bench::runWith(quorl::bench::smallSize)); // so that both sides find things loaded
    const auto figures = quorl::bench::runWith(quorl::bench::smallSize);
    quorl::bench::report(figures, quorl::bench::runWith(quorl::bench::largeSize));
}
