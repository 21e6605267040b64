#include "screens/RunDetailScreen.h"

#include "screens/AnswersHarness.h"

#include <QSignalSpy>

namespace quorl::test {
namespace {

class RunDetailScreenTest : public testing::Test {
protected:
    RunDetailScreen& show(const QuorlRun& run) {
        harness.startOn(run);
        shown = std::make_unique<RunDetailScreen>(run.id, harness.model(), *harness.adapter,
                                                  harness.clipboard, harness.clock, harness.announcer);
        return *shown;
    }

    // Three hours ago.
    QuorlRun makePastRun(QuorlKind kind = QuorlKind::generation) {
        QuorlRun run = makeRun(kind);
        run.createdAt = harness.clock.now() - std::chrono::hours(3);
        return run;
    }

    AnswersHarness harness;
    std::unique_ptr<RunDetailScreen> shown;
};

TEST_F(RunDetailScreenTest, AGenerationHasItsPromptAndSystemPrompt) {
    const QuorlRun run = makePastRun();
    const RunDetailScreen& screen = show(harness.add(run, {makeAnswer(run.id)}));

    EXPECT_TRUE(screen.hasRun());
    EXPECT_EQ(screen.title(), QStringLiteral("Generation"));
    EXPECT_EQ(screen.subtitle(), QStringLiteral("Uncategorized · 3 hr. ago"));
    EXPECT_EQ(screen.promptLabel(), QStringLiteral("Prompt"));
    EXPECT_EQ(screen.prompt(), QStringLiteral("Which way is up?"));
    EXPECT_EQ(screen.questions(), QString());
    EXPECT_EQ(screen.systemPrompt(), QStringLiteral("Answer directly."));
    EXPECT_EQ(shown->cards()->rowCount(), 1);
}

TEST_F(RunDetailScreenTest, ADecisionOfAProgramHasItsStateAndQuestions) {
    const Category root = makeCategory("Support");
    const Category child = makeCategory("Returns", root.id);
    harness.file().saveCategory(root);
    harness.file().saveCategory(child);
    QuorlRun run = makePastRun(QuorlKind::decision);
    run.origin = RunOrigin::api;
    run.categoryID = child.id;
    run.systemPrompt = "";
    run.questionsJSON = Veritor::archive({makeChoice("tone", {"Warm", "Cold"}), makeScore("goodwill")});
    const RunDetailScreen& screen = show(harness.add(run, {}));

    EXPECT_EQ(screen.title(), QStringLiteral("Decision"));
    EXPECT_EQ(screen.subtitle(), QStringLiteral("API · Support / Returns · 3 hr. ago"));
    EXPECT_EQ(screen.promptLabel(), QStringLiteral("State"));
    EXPECT_EQ(screen.questions(),
              QStringLiteral("Choice · tone · Which tone?\nScore · goodwill · How much goodwill?"));
    EXPECT_EQ(screen.systemPrompt(), QString());
}

TEST_F(RunDetailScreenTest, AnUnknownRunShowsNothing) {
    const RunDetailScreen& screen = show(makeRun());

    EXPECT_FALSE(screen.hasRun());
    EXPECT_EQ(screen.title(), QString());
    shown->runVariation();
    EXPECT_EQ(*harness.model().draftPrompt, "");
}

TEST_F(RunDetailScreenTest, ARunThatIsDeletedShowsNothing) {
    const RunDetailScreen& screen = show(harness.add(makeRun(), {makeAnswer(UUID::random())}));

    shown->requestDelete();
    ASSERT_TRUE(*harness.model().pendingDelete);
    EXPECT_EQ((*harness.model().pendingDelete)->kind, PendingDelete::Kind::run);
    harness.model().confirmDelete();
    AnswersHarness::endTurn();

    EXPECT_FALSE(screen.hasRun());
    EXPECT_EQ(shown->cards()->rowCount(), 0);
}

TEST_F(RunDetailScreenTest, AVariationGoesToTheDraft) {
    show(harness.add(makeRun(), {}));
    harness.model().destination = RunScreen{harness.model().library.runAt(0).id};

    shown->runVariation();

    EXPECT_EQ(*harness.model().draftPrompt, "Which way is up?");
    EXPECT_EQ(*harness.model().draftKind, QuorlKind::generation);
    EXPECT_EQ(*harness.model().destination, Destination(Screen::draft));
}

TEST_F(RunDetailScreenTest, TheAgeGrowsWithTime) {
    const RunDetailScreen& screen = show(harness.add(makePastRun(), {}));
    QSignalSpy changed(shown.get(), &RunDetailScreen::changed);
    shown->refresh();
    EXPECT_EQ(changed.size(), 0);

    harness.clock.advance(std::chrono::hours(1));
    shown->refresh();

    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(screen.subtitle(), QStringLiteral("Uncategorized · 4 hr. ago"));
}

class ArrivingAnswersTest : public RunDetailScreenTest {
protected:
    // A run with two answers under way.
    void SetUp() override {
        const QuorlRun run = makeRun();
        show(harness.add(run, {makeAnswer(run.id), makeAnswer(run.id, 1)}));
        for (const std::size_t place : {0u, 1u})
            harness.change(place, [](ModelAnswer& answer) { answer.state = AnswerState::running; });
    }

    void finish(std::size_t place) {
        ModelAnswer answer = harness.answer(place);
        answer.state = AnswerState::done;
        harness.model().library.replaceAnswer(answer);
    }
};

TEST_F(ArrivingAnswersTest, OneIsSaidAloud) {
    harness.model().newComparison();
    finish(0);
    AnswersHarness::endTurn();

    EXPECT_EQ(harness.announcer.words(), QStringLiteral("Test model: That way."));
}

TEST_F(ArrivingAnswersTest, SeveralAreCounted) {
    harness.model().newComparison();
    finish(0);
    finish(1);
    AnswersHarness::endTurn();

    EXPECT_EQ(harness.announcer.words(), QStringLiteral("Answers 2 of 2"));
}

TEST_F(ArrivingAnswersTest, ThoseOfTheRunOnCompareAreSaidThereAndNotTwice) {
    finish(0);
    AnswersHarness::endTurn();

    EXPECT_EQ(harness.announcer.words(), QString());
}

TEST_F(RunDetailScreenTest, AJudgementRedrawsOneCardAndNothingElse) {
    const QuorlRun run = makeRun();
    show(harness.add(run, {makeAnswer(run.id)}));
    QSignalSpy changed(shown.get(), &RunDetailScreen::changed);
    auto* const card = shown->cards()
                           ->data(shown->cards()->index(0), AnswerCardListModel::CardRole)
                           .value<AnswerCardModel*>();

    card->pressThumbsUp();
    AnswersHarness::endTurn();

    EXPECT_TRUE(card->isAccepted());
    EXPECT_EQ(changed.size(), 0);
}

} // namespace
} // namespace quorl::test
