#include "screens/AnswersReview.h"

#include "screens/AnswersHarness.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace quorl::test {
namespace {

class AnswersReviewTest : public testing::Test {
protected:
    AnswersReview& show(const QuorlRun& run) {
        harness.startOn(run);
        review = std::make_unique<AnswersReview>(harness.model(), *harness.adapter, harness.clipboard,
                                                 harness.announcer);
        return *review;
    }

    // From "Model 1" and so on.
    QuorlRun addRun(std::size_t count) {
        const QuorlRun run = makeRun();
        std::vector<ModelAnswer> answers;
        while (answers.size() < count) {
            ModelAnswer answer = makeAnswer(run.id, static_cast<std::int64_t>(answers.size()));
            answer.modelName = "Model " + std::to_string(answers.size() + 1);
            answers.push_back(answer);
        }
        return harness.add(run, answers);
    }

    // Nothing runs after a start, so the states come afterwards.
    AnswersReview& showStates(const std::vector<AnswerState>& states) {
        AnswersReview& shown = show(addRun(states.size()));
        for (std::size_t place = 0; place < states.size(); ++place)
            harness.change(place, [&](ModelAnswer& answer) { answer.state = states[place]; });
        return shown;
    }

    // Three runs of a batch with an answer each, and the second of them on show.
    AnswersReview& showBatch() {
        const QuorlBatch batch = makeBatch();
        harness.file().saveBatch(batch);
        for (int i = 0; i < 3; ++i) {
            QuorlRun run = makeRun(QuorlKind::decision);
            run.batchID = batch.id;
            run.prompt = "The state.";
            run.createdAt += std::chrono::seconds(i);
            run.questionsJSON = Veritor::archive({makeChoice("way " + std::to_string(i), {"up", "down"})});
            runs.push_back(harness.add(run, {makeAnswer(run.id)}));
        }
        AnswersReview& shown = show(runs[1]);
        harness.model().activeBatchID = batch.id;
        AnswersHarness::endTurn();
        return shown;
    }

    AnswersHarness harness;
    std::unique_ptr<AnswersReview> review;
    std::vector<QuorlRun> runs;
};

using enum AnswerState;

TEST_F(AnswersReviewTest, WithoutARunThereIsNothingToReview) {
    const AnswersReview& shown = show(makeRun());

    EXPECT_FALSE(shown.hasRun());
    EXPECT_FALSE(shown.isWaiting());
    EXPECT_FALSE(shown.isStepping());
    EXPECT_EQ(review->cards()->rowCount(), 0);
}

TEST_F(AnswersReviewTest, CountsWhatIsFinishedAndWhatIsRated) {
    const AnswersReview& shown = showStates({done, failed, running, done});
    EXPECT_TRUE(shown.hasRun());
    EXPECT_FALSE(shown.isWaiting());
    EXPECT_EQ(shown.finishedCount(), QStringLiteral("3 of 4"));
    EXPECT_EQ(shown.rated(), 0);

    harness.change(0, [](ModelAnswer& answer) { answer.accepted = false; });
    harness.change(1, [](ModelAnswer& answer) { answer.rating = 3; });
    harness.change(3, [](ModelAnswer& answer) { answer.chosenCorrect = true; });

    EXPECT_EQ(shown.rated(), 2);
    EXPECT_EQ(shown.total(), 4);
}

TEST_F(AnswersReviewTest, WaitsForTheSelectedModelsUntilTheFirstHasAnswered) {
    const AnswersReview& shown = showStates({running, running});
    EXPECT_TRUE(shown.isWaiting());
    EXPECT_EQ(shown.awaited(), QStringLiteral("your selected models"));
    EXPECT_EQ(shown.finishedCount(), QStringLiteral("0 of 2"));

    harness.change(1, [](ModelAnswer& answer) { answer.state = failed; });
    EXPECT_FALSE(shown.isWaiting());
}

TEST_F(AnswersReviewTest, WaitsForTheOnlyModelByItsName) {
    EXPECT_EQ(showStates({running}).awaited(), QStringLiteral("Model 1"));
}

TEST_F(AnswersReviewTest, OutsideABatchTheNextQuestionIsANewOne) {
    AnswersReview& shown = showStates({done});
    EXPECT_FALSE(shown.isStepping());
    EXPECT_EQ(shown.nextLabel(), QStringLiteral("Next question"));
    EXPECT_FALSE(shown.canStepBack());
    EXPECT_FALSE(shown.canStepOn());
    EXPECT_EQ(shown.batchQuestions(), QStringList());

    shown.next();
    AnswersHarness::endTurn();

    EXPECT_FALSE(shown.hasRun());
    EXPECT_EQ(*harness.model().activeRunID, std::nullopt);
}

TEST_F(AnswersReviewTest, StepsThroughABatch) {
    AnswersReview& shown = showBatch();
    EXPECT_TRUE(shown.isStepping());
    EXPECT_EQ(shown.stepLabel(), QStringLiteral("Question 2 of 3"));
    EXPECT_EQ(shown.question(), QStringLiteral("Which way 1?"));
    EXPECT_EQ(shown.nextLabel(), QStringLiteral("Next question"));
    EXPECT_TRUE(shown.canStepBack());
    EXPECT_TRUE(shown.canStepOn());

    shown.stepOn();
    AnswersHarness::endTurn();
    EXPECT_EQ(*harness.model().activeRunID, runs[2].id);
    EXPECT_EQ(shown.stepLabel(), QStringLiteral("Question 3 of 3"));
    EXPECT_FALSE(shown.canStepOn());
    EXPECT_EQ(shown.nextLabel(), QStringLiteral("Done"));
    shown.stepOn();
    EXPECT_EQ(*harness.model().activeRunID, runs[2].id);

    shown.jumpTo(1);
    AnswersHarness::endTurn();
    shown.stepBack();
    AnswersHarness::endTurn();
    EXPECT_EQ(*harness.model().activeRunID, runs[0].id);
    EXPECT_FALSE(shown.canStepBack());
    shown.stepBack();
    EXPECT_EQ(*harness.model().activeRunID, runs[0].id);
}

TEST_F(AnswersReviewTest, TellsHowFarABatchIsWhileItRuns) {
    AnswersReview& shown = showBatch();
    EXPECT_EQ(shown.batchProgress(), QString());
    EXPECT_EQ(shown.batchShare(), 0);

    Library& library = harness.model().library;
    QuorlBatch batch = *library.findBatch(*runs[0].batchID);
    const auto setState = [&](const QuorlRun& of, AnswerState state) {
        ModelAnswer answer = library.answersOfRun(of.id)[0];
        answer.state = state;
        library.replaceAnswer(answer);
    };
    setState(runs[0], AnswerState::running);
    setState(runs[2], AnswerState::running);
    batch.status = BatchStatus::running;
    library.replaceBatch(batch);
    AnswersHarness::endTurn();
    EXPECT_EQ(shown.batchProgress(), QStringLiteral("1 of 3 answers"));

    // Not of the question on show.
    setState(runs[2], AnswerState::failed);
    AnswersHarness::endTurn();
    EXPECT_EQ(shown.batchProgress(), QStringLiteral("2 of 3 answers"));
    EXPECT_DOUBLE_EQ(shown.batchShare(), 2.0 / 3);

    batch.status = BatchStatus::done;
    library.replaceBatch(batch);
    AnswersHarness::endTurn();
    EXPECT_EQ(shown.batchProgress(), QString());
}

TEST_F(AnswersReviewTest, ListsTheQuestionsOfTheBatch) {
    EXPECT_EQ(showBatch().batchQuestions(),
              (QStringList{QStringLiteral("1. Which way 0?"), QStringLiteral("2. Which way 1?"),
                           QStringLiteral("3. Which way 2?")}));
}

TEST_F(AnswersReviewTest, ABatchWithoutQuestionsIsListedByItsPrompts) {
    const QuorlBatch batch = makeBatch();
    harness.file().saveBatch(batch);
    QuorlRun run = makeRun();
    run.batchID = batch.id;
    AnswersReview& shown = show(harness.add(run, {}));
    harness.model().activeBatchID = batch.id;
    AnswersHarness::endTurn();

    EXPECT_EQ(shown.question(), QStringLiteral("Which way is up?"));
    EXPECT_EQ(shown.batchQuestions(), QStringList{QStringLiteral("1. Which way is up?")});
}

TEST_F(AnswersReviewTest, TheLastNextQuestionOfABatchIsDone) {
    AnswersReview& shown = showBatch();
    shown.next();
    AnswersHarness::endTurn();
    EXPECT_EQ(shown.stepLabel(), QStringLiteral("Question 3 of 3"));

    shown.next();
    AnswersHarness::endTurn();
    EXPECT_FALSE(shown.hasRun());
}

TEST_F(AnswersReviewTest, ARunOutsideTheBatchIsNotSteppedThrough) {
    AnswersReview& shown = showBatch();

    harness.model().activeBatchID = UUID::random();
    AnswersHarness::endTurn();

    EXPECT_FALSE(shown.isStepping());
    EXPECT_EQ(shown.question(), QString());
    EXPECT_EQ(shown.nextLabel(), QStringLiteral("Next question"));
}

TEST_F(AnswersReviewTest, ResetHidesTheAnswersAndKeepsThem) {
    AnswersReview& shown = showStates({done});

    shown.reset();
    AnswersHarness::endTurn();

    EXPECT_FALSE(shown.hasRun());
    EXPECT_EQ(harness.model().library.runCount(), 1u);
}

TEST_F(AnswersReviewTest, AnotherRunsAnswersChangeNothingHere) {
    const QuorlRun other = addRun(1);
    AnswersReview& shown = show(addRun(1));
    QSignalSpy changed(&shown, &AnswersReview::changed);
    QSignalSpy data(shown.cards(), &QAbstractItemModel::dataChanged);

    harness.change(0, [](ModelAnswer& answer) { answer.accepted = true; });

    EXPECT_EQ(changed.size() + data.size(), 0);
    EXPECT_EQ(shown.cards()->rowCount(), 1);
}

TEST_F(AnswersReviewTest, TheCardsAreThereInOrderAndKeepTheirPlaces) {
    AnswersReview& shown = showStates({running, running, running});
    const QAbstractItemModelTester tester(shown.cards(),
                                          QAbstractItemModelTester::FailureReportingMode::Warning);
    QSignalSpy inserted(shown.cards(), &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(shown.cards(), &QAbstractItemModel::rowsRemoved);

    harness.change(1, [](ModelAnswer& answer) { answer.state = done; });

    EXPECT_EQ(inserted.size() + removed.size(), 0);
    for (int row = 0; row < 3; ++row)
        EXPECT_EQ(shown.cards()->data(shown.cards()->index(row), Qt::DisplayRole),
                  QStringLiteral("Model %1").arg(row + 1));
}

TEST_F(AnswersReviewTest, AnAnswerThatComesIsSaidAloudAndManyAreCounted) {
    showStates({running, running, running});
    harness.change(0, [](ModelAnswer& answer) { answer.state = done; });
    EXPECT_EQ(harness.announcer.words(), QStringLiteral("Model 1: That way."));

    for (const std::size_t place : {1u, 2u}) {
        ModelAnswer answer = harness.answer(place);
        answer.state = failed;
        harness.model().library.replaceAnswer(answer);
    }
    AnswersHarness::endTurn();
    EXPECT_EQ(harness.announcer.words(), QStringLiteral("Answers 3 of 3"));
}

TEST_F(AnswersReviewTest, ACorrectionGoesWithTheRun) {
    AnswersReview& shown = showBatch();
    shown.cards()->correction()->open(harness.answer(1), {});

    shown.stepOn();
    AnswersHarness::endTurn();

    EXPECT_EQ(shown.cards()->correction()->form(), AnswerCorrection::Form::None);
}

} // namespace
} // namespace quorl::test
