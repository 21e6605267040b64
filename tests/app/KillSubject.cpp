// A program to be killed: asks the models of a library again and again and says on standard output which
// answers are safe.
//   quorl_kill_subject APPLICATION_SUPPORT KEY
#include "app/AppModel.h"
#include "app/Workers.h"
#include "support/Fakes.h"
#include "transports/DecisionRouter.h"
#include "transports/HTTPSession.h"

#include <cstdio>
#include <set>

using namespace quorl;
using namespace quorl::test;

namespace {

// One line for each answer that has ended since the last call, by way of a pipe, so that the kill cannot take
// it back.
void report(const AppModel& model, std::set<UUID>& reported) {
    for (const ModelAnswer& answer : model.library.answersOfRun(**model.activeRunID)) {
        if (answer.state == AnswerState::running || !reported.insert(answer.id).second)
            continue;
        std::printf("%s %s\n", answer.id.text().c_str(), answer.text.c_str());
        std::fflush(stdout);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3)
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
    std::set<UUID> all;
    for (const ModelProfile& profile : model.library.models())
        all.insert(profile.id);
    model.setKind(QuorlKind::generation);
    model.draftModelIDs = all;
    model.draftPrompt = "Which way is up?";

    std::set<UUID> reported;
    for (;;) {
        clock.advance(std::chrono::seconds(1));
        model.ask();
        const auto hasEnded = [&] {
            // Asked after each piece of work of the loop, so `finish` has returned for all that has ended.
            report(model, reported);
            for (const ModelAnswer& answer : model.library.answersOfRun(**model.activeRunID)) {
                if (answer.state == AnswerState::running)
                    return false;
            }
            return true;
        };
        if (!loop.runUntil(hasEnded))
            return 1;
    }
}
