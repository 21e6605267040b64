#pragma once

#include "app/AppModel.h"
#include "app/Workers.h"
#include "sample-endpoint/SampleEndpoint.h"
#include "store/QuorlStore.h"
#include "store/SupportPaths.h"
#include "support/Builders.h"
#include "support/Fakes.h"
#include "support/TempFolder.h"
#include "transports/DecisionRouter.h"
#include "transports/HTTPSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quorl::test {

// The whole program without its window: a model on a library in a folder of its own, with real HTTP and fakes
// of the desktop.
class Harness {
public:
    Harness() { defaults.setBoolean("seed.decisions.v1", true); }

    // The session ends its requests before the workers are waited for.
    ~Harness() {
        session.close();
        quit();
    }

    /// A library that exists before the program starts: any model in it keeps the catalogue away.
    QuorlStore& file() {
        if (!fileStore)
            fileStore = std::make_unique<QuorlStore>(libraryPath());
        return *fileStore;
    }

    [[nodiscard]] std::string libraryPath() const {
        return (SupportPaths::directory(folder.path()) / "quorl.sqlite").string();
    }

    /// Starts the program, or starts it again.
    AppModel& start() {
        quit();
        appModel = std::make_unique<AppModel>(platform, router, workers);
        return *appModel;
    }

    void quit() { appModel.reset(); }

    AppModel& model() { return *appModel; }

    /// A ready model behind the endpoint, written to the file and given a key.
    ModelProfile addReadyModel(const std::string& identifier, std::int64_t sortIndex = 0) {
        ModelProfile profile = makeModel();
        profile.name = identifier;
        profile.modelIdentifier = identifier;
        profile.endpoint = endpoint.baseURL();
        profile.sortIndex = sortIndex;
        file().saveModel(profile);
        giveKey(profile.id);
        return profile;
    }

    void giveKey(const UUID& modelID) {
        keychain.items[{"com.quorltest.app", modelID.text()}] =
            *ModelSecret{"key-of-the-test", "", "", ""}.json();
    }

    /// A generation draft that can be asked.
    void writeDraft(const std::string& prompt = "Which way is up?") {
        appModel->setKind(QuorlKind::generation);
        appModel->draftPrompt = prompt;
    }

    [[nodiscard]] bool runUntilAnswered() {
        return loop.runUntil([this] {
            for (const UUID& runID : appModel->library.runsWithAnswers()) {
                for (const ModelAnswer& answer : appModel->library.answersOfRun(runID)) {
                    if (answer.state == AnswerState::running)
                        return false;
                }
            }
            return true;
        });
    }

    std::vector<ModelAnswer> activeAnswers() {
        const auto answers = appModel->library.answersOfRun(appModel->activeRunID->value());
        return {answers.begin(), answers.end()};
    }

    TempFolder folder;
    FakeClock clock;
    TestLoop loop;
    FakeDefaults defaults;
    FakeKeychain keychain;
    Platform platform{loop, clock, defaults, keychain, folder.path()};
    sample::SampleEndpoint endpoint;
    HTTPSession session;
    DecisionRouter router{session};
    Workers workers;

private:
    std::unique_ptr<QuorlStore> fileStore;
    std::unique_ptr<AppModel> appModel;
};

/// A completion whose tokens are reported.
inline sample::Completion says(std::string text, std::int64_t input = 12, std::int64_t output = 3) {
    return sample::Completion{.text = std::move(text), .inputTokens = input, .outputTokens = output};
}

} // namespace quorl::test
