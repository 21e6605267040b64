#include "app/BatchHarness.h"
#include "store/RawLibrary.h"
#include "support/KilledProgram.h"

#include <map>
#include <random>
#include <set>

using namespace quorl;
using namespace quorl::test;

namespace {

constexpr const char* interrupted = "Quorl closed before this response finished.";
constexpr std::size_t items = 4;
constexpr std::size_t models = 3;

// What the subject has said is in the file.
struct Safe {
    std::set<std::string> batches;
    std::map<std::string, std::string> answers; // text by answer
};

bool readSafe(const KilledProgram& subject, Safe& safe) {
    const auto line = subject.readLine();
    if (!line)
        return false;
    const auto space = line->find(' ');
    const std::string id = line->substr(space + 1, 36);
    if (line->starts_with("batch"))
        safe.batches.insert(id);
    else
        safe.answers[id] = line->substr(space + 38);
    return true;
}

class APIKillTest : public testing::TestWithParam<int> {
protected:
    void SetUp() override {
        for (std::size_t i = 0; i < models; ++i) {
            const std::string name = "model-" + std::to_string(i);
            harness.addReadyModel(name, static_cast<std::int64_t>(i));
            sample::Completion completion = says("answer of " + name);
            completion.delay = std::chrono::milliseconds(random() % 6);
            harness.endpoint.answer(name, completion);
        }
    }

    // Kills after so many lines and a random stretch of time behind the last of them.
    Safe runAndKill() {
        Safe safe;
        const KilledProgram subject({QUORL_API_KILL_SUBJECT, harness.folder.path().string(),
                                     "key-of-the-test", std::to_string(items)});
        const int linesBefore = 1 + GetParam() % 40;
        for (int i = 0; i < linesBefore; ++i)
            EXPECT_TRUE(readSafe(subject, safe));
        // Not a wait for something to happen but the point of the test: the kill must come at an arbitrary
        // moment.
        const auto moment = std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 15'000);
        while (std::chrono::steady_clock::now() < moment) {
        }
        EXPECT_TRUE(subject.kill());
        while (readSafe(subject, safe)) {
        }
        return safe;
    }

    void expectWhole(const QuorlBatch& batch, const Safe& safe) {
        EXPECT_EQ(batch.status, BatchStatus::done);
        ASSERT_EQ(harness.runsOf(batch.id).size(), items);
        for (std::size_t i = 0; i < items; ++i) {
            const auto answers = harness.answersOf(batch.id, i);
            EXPECT_EQ(answers.size(), models);
            for (const ModelAnswer& answer : answers)
                expectEnded(answer, safe);
        }
    }

    static void expectEnded(const ModelAnswer& answer, const Safe& safe) {
        const auto said = safe.answers.find(answer.id.text());
        if (said != safe.answers.end()) {
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

    BatchHarness harness;
    std::mt19937 random{static_cast<unsigned>(GetParam())};
};

TEST_P(APIKillTest, EveryBatchIsWholeAndDoneAndEveryAnswerThatHadArrivedIsThere) {
    const Safe safe = runAndKill();

    EXPECT_EQ(RawLibrary(harness.libraryPath()).value("PRAGMA integrity_check"), "ok");
    AppModel& model = harness.start();
    std::set<std::string> found;
    std::size_t rows = 0;
    for (const QuorlBatch& batch : model.library.batches()) {
        found.insert(batch.id.text());
        expectWhole(batch, safe);
        rows += items;
    }
    for (const std::string& id : safe.batches)
        EXPECT_TRUE(found.contains(id)) << id;
    EXPECT_EQ(model.library.runCount(), rows);
    EXPECT_EQ(harness.file().loadAnswers().size(), rows * models);
    for (const auto& [id, text] : safe.answers)
        EXPECT_NE(model.library.findAnswer(UUID::parse(id).value()), nullptr);
}

INSTANTIATE_TEST_SUITE_P(AtManyMoments, APIKillTest, testing::Range(0, 40));

} // namespace
