#include "app/Harness.h"
#include "store/RawLibrary.h"
#include "support/KilledProgram.h"

#include <algorithm>
#include <map>
#include <random>
#include <sstream>

using namespace quorl;
using namespace quorl::test;

namespace {

// What the subject has said of one answer: the latest of each kind.
struct Confirmed {
    std::int64_t rated = 0;
    std::int64_t saved = 0;
    std::int64_t removed = 0;
};

// Takes in the next line of the subject.
bool readLine(const KilledProgram& subject, std::map<std::string, Confirmed>& confirmed) {
    const auto line = subject.readLine();
    if (!line)
        return false;
    std::istringstream words(*line);
    std::string what;
    std::string answer;
    std::int64_t number = 0;
    words >> what >> answer >> number;
    Confirmed& of = confirmed[answer];
    (what == "rated" ? of.rated : what == "saved" ? of.saved : of.removed) = number;
    return true;
}

class JudgementKillTest : public testing::TestWithParam<int> {
protected:
    void SetUp() override {
        const QuorlRun run = makeRun();
        harness.addReadyModel("model");
        harness.file().insertRun(run);
        for (int i = 0; i < 4; ++i)
            harness.file().insertAnswer(makeAnswer(run.id, i));
    }

    // Kills the subject after so many of its lines and a random stretch of time, and keeps what it said.
    void killAtSomeMoment() {
        std::mt19937 random(static_cast<unsigned>(GetParam()));
        const KilledProgram subject({QUORL_JUDGEMENT_KILL_SUBJECT, harness.folder.path().string()});
        const int linesBefore = 1 + GetParam() % 29;
        for (int i = 0; i < linesBefore; ++i)
            ASSERT_TRUE(readLine(subject, confirmed));
        // Every third is killed at once, straight behind a confirmation; the others at an arbitrary moment,
        // which is the point of the test and no wait for something to happen.
        const auto stretch = std::chrono::microseconds(GetParam() % 3 == 0 ? 0 : random() % 6'000);
        const auto moment = std::chrono::steady_clock::now() + stretch;
        while (std::chrono::steady_clock::now() < moment) {
        }
        ASSERT_TRUE(subject.kill());
        while (readLine(subject, confirmed)) {
        }
    }

    Harness harness;
    std::map<std::string, Confirmed> confirmed;
};

TEST_P(JudgementKillTest, WhatWasConfirmedIsInTheFileAndNoLinkStandsWithoutItsExample) {
    ASSERT_NO_FATAL_FAILURE(killAtSomeMoment());

    RawLibrary raw(harness.libraryPath());
    EXPECT_EQ(raw.value("PRAGMA integrity_check"), "ok");
    std::map<UUID, DatasetExample> examples;
    for (const DatasetExample& example : harness.file().loadDataset())
        examples[example.id] = example;
    std::size_t linked = 0;
    for (const ModelAnswer& answer : harness.file().loadAnswers()) {
        const Confirmed said = confirmed[answer.id.text()];
        EXPECT_GE(answer.rating.value_or(0), said.rated);
        // Nothing has been begun on it since it was last saved or removed.
        if (answer.rating.value_or(0) == std::max(said.saved, said.removed)) {
            EXPECT_EQ(answer.datasetID.has_value(), said.saved > said.removed);
        }
        if (!answer.datasetID)
            continue;
        ++linked;
        // Removing is two statements on their own, the example first, so a kill between them leaves a link
        // that leads nowhere; the next save then makes a new example. A save leaves no such link.
        const bool mayBeBeingRemoved = answer.rating.value_or(0) % 3 == 0;
        const auto example = examples.find(*answer.datasetID);
        if (example == examples.end()) {
            EXPECT_TRUE(mayBeBeingRemoved);
            --linked;
            continue;
        }
        EXPECT_EQ(example->second.answerID, answer.id);
        EXPECT_GE(std::stoll(example->second.completion), said.saved);
    }
    EXPECT_EQ(examples.size(), linked);
}

INSTANTIATE_TEST_SUITE_P(AtManyMoments, JudgementKillTest, testing::Range(0, 100));

} // namespace
