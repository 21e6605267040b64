// A program to be killed: posts batches to the models of a library again and again and says on standard
// output which batches were taken and which answers are safe.
//   quorl_api_kill_subject APPLICATION_SUPPORT KEY ITEMS
#include "app/AppModel.h"
#include "app/HTTPMessage.h"
#include "app/Workers.h"
#include "base/Json.h"
#include "support/Fakes.h"
#include "transports/DecisionRouter.h"
#include "transports/HTTPSession.h"

#include <cstdio>
#include <set>

using namespace quorl;
using namespace quorl::test;

namespace {

// Each line goes through a pipe, so that the kill cannot take it back.
void say(const char* what, const UUID& id, const std::string& text) {
    std::printf("%s %s %s\n", what, id.text().c_str(), text.c_str());
    std::fflush(stdout);
}

UUID post(AppModel& model, int items) {
    Json::Value body{{"kind", "generation"}, {"items", Json::Value::array()}};
    for (int i = 0; i < items; ++i)
        body["items"].push_back({{"prompt", "Which way is up?"}});
    const HTTPResponse response = model.createAPIBatch(body.dump(), RunOrigin::api, std::nullopt);
    if (response.status != 202)
        std::exit(1);
    const UUID id = **model.selectedBatchID;
    say("batch", id, "");
    return id;
}

// One line for each answer that has ended since the last call.
void report(const AppModel& model, const UUID& batchID, std::set<UUID>& reported) {
    for (const QuorlRun* run : model.library.runsOfBatch(batchID)) {
        for (const ModelAnswer& answer : model.library.answersOfRun(run->id)) {
            if (answer.state != AnswerState::running && reported.insert(answer.id).second)
                say("answer", answer.id, answer.text);
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4)
        return 2;
    FakeClock clock;
    TestLoop loop;
    FakeDefaults defaults;
    FakeKeychain keychain;
    defaults.setBoolean("seed.decisions.v1", true);
    Platform platform{loop, clock, defaults, keychain, argv[1]};
    HTTPSession session;
    const DecisionRouter router(session);
    Workers workers;
    AppModel model(platform, router, workers);
    for (const ModelProfile& profile : std::vector(model.library.models()))
        model.saveSecret(profile.id, {argv[2], "", "", ""});

    std::set<UUID> reported;
    for (;;) {
        clock.advance(std::chrono::seconds(1));
        const UUID first = post(model, std::atoi(argv[3]));
        const UUID second = post(model, std::atoi(argv[3]));
        const auto hasEnded = [&] {
            // Asked after each piece of work of the loop, so `finish` has returned for all that has ended.
            report(model, first, reported);
            report(model, second, reported);
            return model.library.findBatch(second)->status == BatchStatus::done;
        };
        if (!loop.runUntil(hasEnded))
            return 1;
    }
}
