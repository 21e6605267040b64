#pragma once

#include "app/Harness.h"
#include "screens/RootScreen.h"

#include <QCoreApplication>
#include <QTest>

namespace quorl::test {

// The program with the screens over it: two loops take turns, the model's and Qt's.
class ScreenHarness : public Harness {
public:
    ~ScreenHarness() { rootScreen.reset(); } // ahead of its model

    RootScreen& show() {
        rootScreen = std::make_unique<RootScreen>(start(), services());
        return *rootScreen;
    }

    /// The desktop that the screens are given.
    ScreenServices services() {
        return {.clock = clock,
                .defaults = defaults,
                .clipboard = clipboard,
                .motion = motion,
                .windowState = windowState};
    }

    /// A ready decision model behind the endpoint.
    ModelProfile addDecisionModel(const std::string& name, std::int64_t sortIndex = 0) {
        ModelProfile profile = addReadyModel(name, sortIndex);
        profile.provider = ProviderKind::veritor;
        file().saveModel(profile);
        return profile;
    }

    /// Lets a turn of the event loop end.
    static void endTurn() { QCoreApplication::processEvents(); }

    template <class Condition>
    [[nodiscard]] bool waitFor(Condition isDone) {
        return QTest::qWaitFor(
            [&] {
                loop.runPosted();
                return isDone();
            },
            60'000);
    }

    [[nodiscard]] bool answered() {
        return waitFor([this] { return rootScreen->draft()->review()->hasRun() && !anyRunning(); });
    }

    RootScreen& root() { return *rootScreen; }

    FakeClipboard clipboard;
    FakeMotionSetting motion;
    FakeWindowState windowState;

private:
    bool anyRunning() {
        for (const ModelAnswer& answer : activeAnswers()) {
            if (answer.state == AnswerState::running)
                return true;
        }
        return false;
    }

    std::unique_ptr<RootScreen> rootScreen;
};

} // namespace quorl::test
