#include "app/Harness.h"
#include "store/RawLibrary.h"
#include "support/KilledProgram.h"

#include <map>
#include <random>

using namespace quorl;
using namespace quorl::test;

namespace {

constexpr const char* interrupted = "Quorl closed before this response finished.";

using Safe = std::map<std::string, std::string>; // text by answer

// Takes in the next answer that the subject says is safe.
bool readAnswer(const KilledProgram& subject, Safe& safe) {
    const auto line = subject.readLine();
    if (!line)
        return false;
    safe[line->substr(0, 36)] = line->substr(37);
    return true;
}

class KillTest : public testing::TestWithParam<int> {};

// Each round kills at another moment: after so many safe answers and a random stretch of time behind the last
// of them.
TEST_P(KillTest, EveryAnswerThatHadArrivedIsThereAndTheOthersAreFailed) {
    Harness harness;
    std::mt19937 random(static_cast<unsigned>(GetParam()));
    for (int i = 0; i < 6; ++i) {
        const std::string name = "model-" + std::to_string(i);
        harness.addReadyModel(name, i);
        sample::Completion completion = says("answer of " + name);
        completion.delay = std::chrono::milliseconds(random() % 12);
        harness.endpoint.answer(name, completion);
    }

    Safe safe;
    {
        const KilledProgram subject({QUORL_KILL_SUBJECT, harness.folder.path().string(), "key-of-the-test"});
        const int answersBefore = 1 + GetParam() % 17;
        for (int i = 0; i < answersBefore; ++i)
            ASSERT_TRUE(readAnswer(subject, safe));
        // Not a wait for something to happen but the point of the test: the kill must come at an arbitrary
        // moment.
        const auto moment = std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 15'000);
        while (std::chrono::steady_clock::now() < moment) {
        }
        ASSERT_TRUE(subject.kill());
        while (readAnswer(subject, safe)) {
        }
    }

    EXPECT_EQ(RawLibrary(harness.libraryPath()).value("PRAGMA integrity_check"), "ok");
    AppModel& model = harness.start();
    std::size_t shown = 0;
    for (const UUID& runID : model.library.runsWithAnswers()) {
        EXPECT_NE(model.library.findRun(runID), nullptr);
        for (const ModelAnswer& answer : model.library.answersOfRun(runID)) {
            const auto said = safe.find(answer.id.text());
            if (said != safe.end()) {
                ++shown;
                EXPECT_EQ(answer.state, AnswerState::done);
                EXPECT_EQ(answer.text, said->second);
            } else if (answer.state == AnswerState::failed) {
                EXPECT_EQ(answer.errorMessage, interrupted);
            } else {
                // Written, and the kill came before it could be said.
                EXPECT_EQ(answer.state, AnswerState::done);
                EXPECT_EQ(answer.text, "answer of " + answer.modelName);
            }
        }
    }
    EXPECT_EQ(shown, safe.size());
    EXPECT_EQ(harness.file().loadAnswers().size(), [&] {
        std::size_t count = 0;
        for (const UUID& runID : model.library.runsWithAnswers())
            count += model.library.answersOfRun(runID).size();
        return count;
    }());
}

INSTANTIATE_TEST_SUITE_P(AtManyMoments, KillTest, testing::Range(0, 40));

} // namespace
