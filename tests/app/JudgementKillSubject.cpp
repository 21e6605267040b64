// A program to be killed: judges the answers of a library and keeps them as examples, again and again, and
// says on standard output what is safe as soon as the call has returned.
//   quorl_judgement_kill_subject APPLICATION_SUPPORT
#include "app/AppModel.h"
#include "app/Workers.h"
#include "support/Fakes.h"
#include "transports/DecisionRouter.h"
#include "transports/HTTPSession.h"

#include <cstdio>

using namespace quorl;
using namespace quorl::test;

namespace {

// By way of a pipe, so that the kill cannot take it back.
void report(const char* what, const UUID& answerID, std::int64_t number) {
    std::printf("%s %s %lld\n", what, answerID.text().c_str(), static_cast<long long>(number));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2)
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
    const UUID runID = model.library.runAt(0).id;

    // Numbers only grow, so the file says how far it is behind.
    for (std::int64_t number = 1;; ++number) {
        const auto ofRun = model.library.answersOfRun(runID);
        const UUID id = ofRun[static_cast<std::size_t>(number) % ofRun.size()].id;
        model.setRating(id, number);
        report("rated", id, number);
        // Made, rewritten, removed in turn.
        if (number % 3 != 0) {
            model.saveToDataset(id, std::to_string(number), true, std::nullopt);
            report("saved", id, number);
        } else {
            model.removeFromDataset(id);
            report("removed", id, number);
        }
        if (model.alertMessage->has_value())
            return 1;
    }
}
