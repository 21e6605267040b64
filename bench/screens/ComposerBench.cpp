// How long a keystroke in the composer takes until the frame that shows it, and until the program rests again
// with the draft on the disk: in an empty library and in one of 500,000 answers, in a question of a megabyte,
// and with 200 rows of a bulk list, which are scrolled too. In the program's own window, drawn without a GPU.

#include "app/AppModel.h"
#include "app/Workers.h"
#include "library/LargeLibrary.h"
#include "platform/linux/DesktopMotion.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/QSettingsWindowState.h"
#include "platform/linux/QtClipboard.h"
#include "screens/MainWindow.h"
#include "screens/RootScreen.h"
#include "store/SupportPaths.h"
#include "transports/DecisionRouter.h"
#include "transports/HTTPSession.h"

#include <QAbstractEventDispatcher>
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
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quorl::bench {

namespace {

constexpr int presses = 30;
constexpr std::size_t megabyte = 1'000'000;

double wallClock() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double, std::milli>(now).count();
}

// What this thread has computed, which on a busy machine is less than what has passed.
double threadClock() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

double median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

double worst(const std::vector<double>& times) {
    return *std::max_element(times.begin(), times.end());
}

std::string prose(std::size_t bytes, std::size_t perParagraph) {
    std::string text;
    while (text.size() < bytes) {
        const std::size_t start = text.size();
        while (text.size() < start + perParagraph && text.size() < bytes)
            text += "An idempotency key makes the retry safe: the provider keeps it with the first result. ";
        text += '\n';
    }
    return text;
}

// The program and its window, on the library that is in its folder.
class Program {
public:
    explicit Program(const std::function<void(AppModel&)>& writeDraft)
        : motion(desktop.services.mainThread, desktop.directories.config),
          windowState(windowStateFile(desktop.directories)), router(session),
          model(desktop.services, router, workers) {
        writeDraft(model);
        screens = std::make_unique<RootScreen>(model, ScreenServices{.clock = desktop.services.clock,
                                                                     .defaults = desktop.services.defaults,
                                                                     .clipboard = clipboard,
                                                                     .motion = motion,
                                                                     .windowState = windowState});
        const double start = wallClock();
        const double computing = threadClock();
        main = std::make_unique<MainWindow>(*screens);
        QObject::connect(&main->window(), &QQuickWindow::frameSwapped, [this] { ++frames; });
        main->window().requestActivate();
        awaitFrame();
        std::printf("  first frame after %.1f ms, computing %.1f\n", wallClock() - start,
                    threadClock() - computing);
        rest();
    }

    // Each `act` until its frame, and until there is nothing left to do.
    void report(const char* what, const std::function<void()>& act) {
        std::vector<double> shown;
        std::vector<double> computed;
        std::vector<double> rested;
        for (int time = 0; time < presses; ++time) {
            const double start = wallClock();
            const double computing = threadClock();
            act();
            awaitFrame();
            shown.push_back(wallClock() - start);
            computed.push_back(threadClock() - computing);
            while (QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents)) {
            }
            rested.push_back(wallClock() - start);
            rest();
        }
        std::printf("  %-34s frame after %6.2f ms (worst %6.2f), computing %6.2f (worst %6.2f), at rest "
                    "after %6.2f\n",
                    what, median(shown), worst(shown), median(computed), worst(computed), median(rested));
    }

    void press(int key, const QString& text = {}, Qt::KeyboardModifiers modifiers = {}) {
        QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
        QKeyEvent up(QEvent::KeyRelease, key, modifiers, text);
        QCoreApplication::sendEvent(&main->window(), &down);
        QCoreApplication::sendEvent(&main->window(), &up);
    }

    void type(const char* what) {
        int number = 0;
        report(what, [&] {
            press(Qt::Key_A + number % 26, QString(QChar(u'a' + number % 26)));
            ++number;
        });
    }

    void scroll() {
        QQuickItem* pane = main->window().activeFocusItem();
        while (pane && !pane->inherits("QQuickFlickable"))
            pane = pane->parentItem();
        if (pane)
            report("scrolling by 40", [&] {
                const double end = pane->property("contentHeight").toDouble() - pane->height();
                const double next = pane->property("contentY").toDouble() + 40;
                pane->setProperty("contentY", next > end ? 0 : next);
            });
    }

    // What is left over for idle moments happens in them.
    static void rest() {
        const double end = wallClock() + 60;
        while (wallClock() < end)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }

private:
    void awaitFrame() {
        const int drawn = frames;
        main->window().update();
        while (frames == drawn)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    LinuxPlatform desktop;
    QtClipboard clipboard;
    DesktopMotion motion;
    QSettingsWindowState windowState;
    HTTPSession session;
    DecisionRouter router;
    Workers workers;
    AppModel model;
    std::unique_ptr<RootScreen> screens;
    std::unique_ptr<MainWindow> main;
    int frames = 0;
};

// Folders of its own for each, gone with the object.
class Home {
public:
    explicit Home(std::size_t runs = 0) {
        for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
            qputenv(variable, folder.path().toUtf8());
        const auto support = SupportPaths::directory(folder.path().toStdString());
        std::filesystem::create_directories(support);
        if (runs > 0)
            std::filesystem::copy_file(largeLibrary(runs), support / "quorl.sqlite");
    }

private:
    QTemporaryDir folder;
};

void writeQuestion(AppModel& model, const std::string& question) {
    model.setKind(QuorlKind::generation);
    model.draftPrompt = question;
}

void measureQuestion(const std::string& question, std::size_t runs = 0) {
    const Home home(runs);
    Program program([&](AppModel& model) { writeQuestion(model, question); });
    program.type("a letter at the end");
    program.press(Qt::Key_Home, {}, Qt::ControlModifier);
    Program::rest();
    program.type("a letter at the start");
    if (question.size() >= megabyte)
        program.scroll();
}

void measureBulkList() {
    const Home home;
    Program program([](AppModel& model) {
        model.setBulk(true);
        std::vector<BulkQuestion> questions;
        for (int number = 1; number <= 200; ++number)
            questions.push_back({UUID::random(), "Is invoice " + std::to_string(number) + " to be paid?"});
        model.draftBulkQuestions = std::move(questions);
    });
    program.type("a letter in the first row");
    for (int row = 1; row < 200; ++row)
        program.press(Qt::Key_Return, QStringLiteral("\r"));
    Program::rest();
    program.type("a letter in the last row");
    program.scroll();
}

} // namespace

} // namespace quorl::bench

// quorl_bench_composer [WORD]: all, or those with that word in their title.
int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    QGuiApplication application(argc, argv);
    const std::string_view word = argc > 1 ? argv[1] : "";
    using namespace quorl::bench;
    const auto measure = [&](const char* title, const auto& what) {
        if (std::string_view(title).find(word) == std::string_view::npos)
            return;
        std::printf("%s\n", title);
        what();
    };
    measure("a question in an empty library", [] { measureQuestion("Which way is up?"); });
    measure("a question beside 500,000 answers", [] { measureQuestion("Which way is up?", 100'000); });
    measure("200 questions in a list", [] { measureBulkList(); });
    measure("1 MB in paragraphs of 500", [] { measureQuestion(prose(megabyte, 500)); });
    measure("1 MB in one paragraph", [] { measureQuestion(prose(megabyte, megabyte)); });
    return EXIT_SUCCESS;
}
