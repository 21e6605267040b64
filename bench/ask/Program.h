#pragma once

#include "app/AppModel.h"
#include "app/Workers.h"
#include "sample-endpoint/SampleEndpoint.h"
#include "store/QuorlStore.h"
#include "store/SupportPaths.h"
#include "support/Builders.h"
#include "support/Fakes.h"
#include "transports/DecisionRouter.h"
#include "transports/HTTPSession.h"

#include <sys/resource.h>

#include <filesystem>
#include <memory>

namespace quorl::bench {

/// Hundreds of requests at once need more descriptors than a shell usually grants.
inline void raiseDescriptorLimit() {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

// The program without its window, on the library in `folder`, with `count` ready models behind an endpoint
// that answers at once.
class Program {
public:
    Program(const std::filesystem::path& folder, int count, const sample::SampleEndpoint& endpoint)
        : Program(folder, count, endpoint.baseURL()) {}

    Program(const std::filesystem::path& folder, int count, const std::string& baseURL)
        : platform{loop, clock, defaults, keychain, folder} {
        raiseDescriptorLimit();
        defaults.setBoolean("seed.decisions.v1", true);
        model = std::make_unique<AppModel>(platform, router, workers);
        std::set<UUID> chosen;
        for (const ModelProfile& present : std::vector(model->library.models())) {
            model->pendingDelete = PendingDelete{PendingDelete::Kind::model, present.id};
            model->confirmDelete();
        }
        for (int i = 0; i < count; ++i) {
            model->addModel(ProviderKind::openAICompatible);
            ModelProfile profile = model->library.models().back();
            profile.modelIdentifier = "bench";
            profile.endpoint = baseURL;
            profile.enabled = true;
            model->replaceModel(profile);
            model->saveSecret(profile.id, {"key", "", "", ""});
            chosen.insert(profile.id);
        }
        model->draftModelIDs = chosen;
        model->setKind(QuorlKind::generation);
        model->draftPrompt = "Which way is up?";
    }

    ~Program() {
        session.close();
        model.reset();
    }

    /// Past the debounce of the run button.
    void ask() {
        clock.advance(std::chrono::seconds(1));
        model->ask();
    }

    void runUntilAnswered() {
        loop.runUntil([this] {
            for (const ModelAnswer& answer : model->library.answersOfRun(**model->activeRunID)) {
                if (answer.state == AnswerState::running)
                    return false;
            }
            return true;
        });
    }

    test::FakeClock clock;
    test::TestLoop loop;
    test::FakeDefaults defaults;
    test::FakeKeychain keychain;
    Platform platform;
    HTTPSession session;
    DecisionRouter router{session};
    Workers workers;
    std::unique_ptr<AppModel> model;
};

} // namespace quorl::bench
