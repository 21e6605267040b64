// How long answers take to be seen: a run with many or with long answers until its first frame, one
// judgement, one arrival, how many frames pass between an arrival and the one that shows it, and the frames
// while the answers are scrolled and the window is resized. In the window, with the renderer of this machine.

#include "screens/AnswersHarness.h"
#include "screens/AnswersReview.h"
#include "screens/Graphics.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace quorl::test {
namespace {

constexpr const char* scene = R"(
import QtQuick
import Quorl

Window {
    id: root

    required property AnswersReview review

    width: 1240
    height: 800
    visible: true

    AnswersPane {
        anchors.fill: parent
        review: root.review
        padding: 32
        isStacked: false
        fields: Item {}
        footer: Item {}
    }
})";

std::string prose(std::size_t bytes) {
    std::string text;
    while (text.size() < bytes) {
        text += "An idempotency key makes the retry safe: the provider keeps the key with the first result. ";
        if (text.size() % 7 == 0)
            text += "\n\n";
    }
    return text;
}

class Bench {
public:
    Bench(std::size_t count, std::size_t bytes) {
        const QuorlRun run = makeRun();
        std::vector<ModelAnswer> answers;
        for (std::size_t i = 0; i < count; ++i) {
            answers.push_back(makeAnswer(run.id, static_cast<std::int64_t>(i)));
            answers.back().text = prose(bytes);
        }
        harness.add(run, answers);
        runID = run.id;
        harness.startOn(run);
        harness.model().newComparison();
        review = std::make_unique<AnswersReview>(harness.model(), *harness.adapter, harness.clipboard,
                                                 harness.announcer);
        QQmlComponent component(&engine);
        component.setData(scene, QUrl());
        window.reset(qobject_cast<QQuickWindow*>(component.createWithInitialProperties(
            {{QStringLiteral("review"), QVariant::fromValue(review.get())}})));
        if (!window)
            qFatal("%s", qUtf8Printable(component.errorString()));
        QObject::connect(window.get(), &QQuickWindow::frameSwapped, [this] { ++frames; });
        QTest::qWait(300);
    }

    // Milliseconds until the first frame after that, and then until the window rests.
    void report(const char* what, const std::function<void()>& act) {
        frames = 0;
        const auto start = std::chrono::steady_clock::now();
        act();
        const bool isSeen = QTest::qWaitFor([this] { return frames > 0; }, 20'000);
        const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
        std::printf("  %-28s first frame after %7.1f ms%s\n", what, took.count(), isSeen ? "" : " (none)");
        QTest::qWait(700);
    }

    // Milliseconds from each of many steps to the frame that shows it.
    void reportSteps(const char* what, const std::function<void(int)>& act) {
        std::vector<double> times;
        for (int step = 1; step <= 60; ++step) {
            const int before = frames;
            const auto start = std::chrono::steady_clock::now();
            act(step);
            if (!QTest::qWaitFor([&] { return frames > before; }, 2'000))
                continue; // nothing to draw
            times.push_back(
                std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
        }
        std::sort(times.begin(), times.end());
        if (times.empty())
            return (void)std::printf("  %-28s no frame\n", what);
        std::printf("  %-28s median %5.1f ms   slowest %5.1f ms\n", what, times[times.size() / 2],
                    times.back());
    }

    void show() { harness.model().activeRunID = runID; }
    void judge() {
        harness.model().setAccepted(harness.answer().id, !harness.answer().accepted.value_or(false));
    }
    void setState(AnswerState state) {
        ModelAnswer answer = harness.answer();
        answer.state = state;
        harness.model().library.replaceAnswer(answer);
    }

    void showAll() {
        for (QQuickItem* item : window->findChildren<QQuickItem*>()) {
            if (item->property("text") == QStringLiteral("Show all") &&
                item->inherits("QQuickAbstractButton"))
                return (void)QMetaObject::invokeMethod(item, "clicked");
        }
    }

    // Frames from the arrival to the one whose picture has the finished card.
    void countFrames() {
        setState(AnswerState::running);
        QTest::qWait(300);
        const QImage before = window->grabWindow();
        frames = 0;
        setState(AnswerState::done);
        int passed = 0;
        while (window->grabWindow() == before && passed < 10) {
            const int now = frames;
            if (!QTest::qWaitFor([&] { return frames > now; }, 1000))
                break;
            ++passed;
        }
        std::printf("  %-28s shown after %d frame(s)\n", "an arrival", passed);
    }

    void resize(int width) { window->resize(width, 800); }

    void scroll(qreal to) {
        for (QQuickItem* item : window->findChildren<QQuickItem*>()) {
            if (item->inherits("QQuickFlickable") && item->width() > 1000)
                item->setProperty("contentY", to);
        }
    }

private:
    AnswersHarness harness;
    UUID runID;
    std::unique_ptr<AnswersReview> review;
    QQmlEngine engine;
    std::unique_ptr<QQuickWindow> window;
    int frames = 0;
};

void measure(const char* what, std::size_t count, std::size_t bytes) {
    std::printf("%s\n", what);
    Bench bench(count, bytes);
    bench.report("opening the comparison", [&] { bench.show(); });
    bench.report("a judgement", [&] { bench.judge(); });
    bench.report("scrolling by a page", [&] { bench.scroll(600); });
    bench.report("an answer that starts again", [&] { bench.setState(AnswerState::running); });
    bench.report("an answer that arrives", [&] { bench.setState(AnswerState::done); });
    bench.scroll(0);
    bench.countFrames();
    if (bytes >= 100'000) {
        bench.report("showing all of one", [&] { bench.showAll(); });
        bench.report("a judgement then", [&] { bench.judge(); });
        bench.report("scrolling through it", [&] { bench.scroll(5'000); });
    }
    Bench moving(count, bytes);
    moving.report("opening it again", [&] { moving.show(); });
    moving.reportSteps("scrolling step by step", [&](int step) { moving.scroll(step * 20); });
    moving.scroll(0);
    moving.reportSteps("resizing step by step", [&](int step) { moving.resize(1240 - step * 6); });
}

} // namespace
} // namespace quorl::test

int main(int argc, char* argv[]) {
    quorl::chooseRenderer();
    const QGuiApplication application(argc, argv);
    quorl::test::measure("4 answers of 2 KB", 4, 2'000);
    quorl::test::measure("10 answers of 100 KB", 10, 100'000);
    quorl::test::measure("500 answers of 1 KB", 500, 1'000);
    return EXIT_SUCCESS;
}
