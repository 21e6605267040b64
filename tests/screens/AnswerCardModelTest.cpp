#include "screens/AnswerCardModel.h"

#include "screens/AnswerCardListModel.h"
#include "screens/AnswersHarness.h"

#include <QSignalSpy>

namespace quorl::test {
namespace {

class AnswerCardModelTest : public testing::Test {
protected:
    // The card of a run's only answer.
    AnswerCardModel& show(const QuorlRun& run) {
        harness.startOn(run);
        list = std::make_unique<AnswerCardListModel>(harness.model(), harness.clipboard);
        refresh();
        return card();
    }

    AnswerCardModel& showGeneration(const std::function<void(ModelAnswer&)>& edit = [](ModelAnswer&) {}) {
        ModelAnswer answer = makeAnswer(UUID::random());
        edit(answer);
        return show(harness.add(makeRun(), {answer}));
    }

    AnswerCardModel& showScale() {
        QuorlRun run = makeRun();
        run.scoringMode = ScoringMode::scale;
        return show(harness.add(run, {makeAnswer(run.id)}));
    }

    AnswerCardModel& showDecision() {
        return show(harness.addDecision({makeChoice("tone", {"Warm", "Factual", "Cold"})}, choiceText));
    }

    AnswerCardModel& card() {
        return *list->data(list->index(0), AnswerCardListModel::CardRole).value<AnswerCardModel*>();
    }

    // What the screen does when the model has changed.
    void refresh() {
        const QuorlRun& run = harness.model().library.runAt(0);
        list->showRun(&run, harness.model().library.answersOfRun(run.id));
    }

    void change(const std::function<void(ModelAnswer&)>& edit) {
        harness.change(0, edit);
        refresh();
    }

    const ModelAnswer& stored() { return harness.answer(); }
    std::string toastTitle() { return *harness.model().feedback ? (*harness.model().feedback)->title : ""; }

    AnswersHarness harness;
    std::unique_ptr<AnswerCardListModel> list;
};

TEST_F(AnswerCardModelTest, SpeaksTheWordsOfTheCardAndOfItsDetails) {
    const AnswerCardModel& card = showGeneration([](ModelAnswer& answer) {
        answer.modelName = "GPT-4.1";
        answer.text = "That %1 way.\xFF";
        answer.latencyMS = 1234;
        answer.inputTokens = 1200;
        answer.outputTokens = 35;
        answer.tokensEstimated = true;
        answer.costUSD = 0;
    });

    EXPECT_EQ(card.modelName(), QStringLiteral("GPT-4.1"));
    EXPECT_EQ(card.state(), AnswerCardModel::State::Done);
    EXPECT_EQ(card.text(), QStringLiteral("That %1 way.\uFFFD"));
    EXPECT_EQ(card.results().size(), 0);
    EXPECT_EQ(card.transport(), QStringLiteral("Direct API"));
    EXPECT_EQ(card.error(), QString());
    EXPECT_EQ(card.time(), QStringLiteral("1.2 s"));
    EXPECT_EQ(card.tokens(), QStringLiteral("~1.2k in · ~35 out"));
    EXPECT_EQ(card.cost(), QStringLiteral("$0"));
}

TEST_F(AnswerCardModelTest, AnUnknownCostIsNotSpokenOf) {
    EXPECT_EQ(showGeneration([](ModelAnswer& answer) { answer.costUSD = std::nullopt; }).cost(), QString());
}

TEST_F(AnswerCardModelTest, ADecisionHasItsTypedResults) {
    const AnswerCardModel& card = showDecision();

    ASSERT_EQ(card.results().size(), 1);
    const QVariantMap result = card.results()[0].toMap();
    EXPECT_EQ(result[QStringLiteral("prompt")], QStringLiteral("tone"));
    EXPECT_EQ(result[QStringLiteral("answer")], QStringLiteral("Warm"));
    EXPECT_EQ(result[QStringLiteral("confidence")], QStringLiteral("Model confidence: 50%"));
    const QVariantList signalRows = result[QStringLiteral("signals")].toList();
    ASSERT_EQ(signalRows.size(), 4);
    EXPECT_EQ(signalRows[0].toMap()[QStringLiteral("label")], QStringLiteral("Warm"));
    EXPECT_EQ(signalRows[0].toMap()[QStringLiteral("percent")], 71);
}

TEST_F(AnswerCardModelTest, ADecisionWhoseTextIsNotJSONShowsTheTextAndIsCorrectedByHand) {
    AnswerCardModel& card =
        show(harness.addDecision({makeChoice("tone", {"Warm", "Cold"})}, "Warm, I think."));
    EXPECT_EQ(card.results().size(), 0);
    EXPECT_EQ(card.text(), QStringLiteral("Warm, I think."));

    card.pressThumbsDown();
    EXPECT_EQ(list->correction()->form(), AnswerCorrection::Form::ByHand);
}

TEST_F(AnswerCardModelTest, TheThumbUpAcceptsAndSaves) {
    AnswerCardModel& card = showGeneration();
    EXPECT_EQ(card.thumbsUpHelp(), QStringLiteral("Mark answer correct and save to dataset"));

    card.pressThumbsUp();
    refresh();

    EXPECT_EQ(stored().accepted, true);
    ASSERT_TRUE(stored().datasetID);
    EXPECT_EQ(harness.model().library.findExample(*stored().datasetID)->completion, "That way.");
    EXPECT_EQ(toastTitle(), "1 examples logged"); // of the first, in place of "Saved to dataset"
    EXPECT_TRUE(card.isAccepted());
    EXPECT_EQ(card.thumbsUpHelp(), QStringLiteral("Clear positive rating"));
    EXPECT_TRUE(card.isSaved());
}

TEST_F(AnswerCardModelTest, ASecondPressOnALitThumbClearsItAndLeavesTheDataset) {
    AnswerCardModel& card = showGeneration();
    card.pressThumbsUp();
    refresh();
    card.pressThumbsUp();
    refresh();

    EXPECT_EQ(stored().accepted, std::nullopt);
    EXPECT_TRUE(stored().datasetID);
    EXPECT_EQ(harness.model().library.dataset().size(), 1u);

    change([](ModelAnswer& answer) { answer.accepted = false; });
    EXPECT_TRUE(card.isRefused());
    EXPECT_EQ(card.thumbsDownHelp(), QStringLiteral("Clear negative rating"));
    card.pressThumbsDown();
    EXPECT_EQ(stored().accepted, std::nullopt);
    EXPECT_EQ(list->correction()->form(), AnswerCorrection::Form::None);
}

TEST_F(AnswerCardModelTest, TheThumbDownAsksForTheCorrectAnswerAndChangesNothingYet) {
    AnswerCardModel& card = showDecision();
    EXPECT_EQ(card.thumbsDownHelp(), QStringLiteral("Choose the correct answer and save it"));

    card.pressThumbsDown();

    EXPECT_EQ(list->correction()->form(), AnswerCorrection::Form::ByChoice);
    EXPECT_EQ(stored().accepted, std::nullopt);
}

TEST_F(AnswerCardModelTest, ARatingIsSetAndCleared) {
    AnswerCardModel& card = showScale();
    EXPECT_TRUE(card.isRated1To10());
    EXPECT_EQ(card.ratingLabel(), QStringLiteral("Rate"));

    card.rate(8);
    refresh();
    EXPECT_EQ(stored().rating, 8);
    EXPECT_EQ(card.ratingLabel(), QStringLiteral("8 / 10"));

    card.clearRating();
    refresh();
    EXPECT_EQ(stored().rating, std::nullopt);
    EXPECT_EQ(card.rating(), 0);
}

TEST_F(AnswerCardModelTest, TheBookmarkSavesOnce) {
    AnswerCardModel& card = showGeneration();
    card.saveToDataset();
    refresh();
    ASSERT_TRUE(stored().datasetID);
    EXPECT_EQ(stored().accepted, std::nullopt);
    const UUID first = *stored().datasetID;

    harness.model().feedback = std::nullopt;
    card.saveToDataset();
    EXPECT_EQ(stored().datasetID, first);
    EXPECT_EQ(toastTitle(), "");

    card.removeFromDataset();
    refresh();
    EXPECT_FALSE(card.isSaved());
    EXPECT_EQ(harness.model().library.dataset().size(), 0u);
}

TEST_F(AnswerCardModelTest, ADecisionMayBePreferredAndAGenerationNever) {
    AnswerCardModel& card = showDecision();
    EXPECT_TRUE(card.canPrefer());
    EXPECT_EQ(card.preferenceEntry(), QStringLiteral("Mark as preferred answer"));

    card.togglePreferred();
    refresh();
    EXPECT_TRUE(card.isPreferred());
    EXPECT_EQ(card.preferenceEntry(), QStringLiteral("Clear preferred answer"));
    card.togglePreferred();
    refresh();
    EXPECT_FALSE(card.isPreferred());
    change([](ModelAnswer& answer) { answer.state = AnswerState::failed; });
    EXPECT_FALSE(card.canPrefer());
}

TEST_F(AnswerCardModelTest, AGenerationIsNeverPreferred) {
    EXPECT_FALSE(showGeneration().canPrefer());
}

TEST_F(AnswerCardModelTest, TheTextIsCopiedAsItIsStored) {
    showDecision().copy();

    EXPECT_EQ(harness.clipboard.contents, choiceText);
}

TEST_F(AnswerCardModelTest, OnlyAnAnswerUnderWayCannotBeRunAgain) {
    const AnswerCardModel& card = showGeneration();
    EXPECT_TRUE(card.canRunAgain());
    change([](ModelAnswer& answer) { answer.state = AnswerState::failed; });
    EXPECT_TRUE(card.canRunAgain());
    change([](ModelAnswer& answer) { answer.state = AnswerState::running; });
    EXPECT_FALSE(card.canRunAgain());
}

TEST_F(AnswerCardModelTest, RunAgainAsksTheModelOnceMore) {
    const ModelProfile profile = harness.addReadyModel("up");
    harness.endpoint.answer("up", says("The other way."));
    AnswerCardModel& card = showGeneration([&](ModelAnswer& answer) { answer.modelID = profile.id; });

    card.runAgain();
    EXPECT_EQ(stored().state, AnswerState::running);
    ASSERT_TRUE(harness.runUntilAnswered());
    refresh();

    EXPECT_EQ(card.text(), QStringLiteral("The other way."));
}

TEST_F(AnswerCardModelTest, ALoginIsOfferedWhereClaudeCodeFailed) {
    const AnswerCardModel& card = showGeneration([](ModelAnswer& answer) {
        answer.provider = ProviderKind::claudeCode;
        answer.errorMessage = "Rate limit %1 reached.";
    });
    EXPECT_FALSE(card.canLogIn());

    change([](ModelAnswer& answer) { answer.state = AnswerState::failed; });
    EXPECT_TRUE(card.canLogIn());
    EXPECT_EQ(card.error(), QStringLiteral("Rate limit %1 reached."));
    EXPECT_EQ(card.transport(), QStringLiteral("Local CLI"));

    change([](ModelAnswer& answer) { answer.provider = ProviderKind::codex; });
    EXPECT_FALSE(card.canLogIn());
}

TEST_F(AnswerCardModelTest, AKeyJudgesOnlyWhereTheCardHasTheButton) {
    AnswerCardModel& binary = showGeneration();
    binary.rateByKey(7);
    EXPECT_EQ(stored().rating, std::nullopt);
    binary.acceptByKey();
    EXPECT_EQ(stored().accepted, true);
    binary.refuseByKey();
    EXPECT_EQ(list->correction()->form(), AnswerCorrection::Form::ByHand);
    list->correction()->cancel();

    change([](ModelAnswer& answer) {
        answer.state = AnswerState::failed;
        answer.accepted = std::nullopt;
    });
    binary.acceptByKey();
    binary.refuseByKey();
    EXPECT_EQ(stored().accepted, std::nullopt);
    EXPECT_EQ(list->correction()->form(), AnswerCorrection::Form::None);
}

TEST_F(AnswerCardModelTest, ARatedCardTakesDigitsAndNoThumbs) {
    AnswerCardModel& card = showScale();
    card.acceptByKey();
    card.refuseByKey();
    EXPECT_EQ(stored().accepted, std::nullopt);
    EXPECT_EQ(list->correction()->form(), AnswerCorrection::Form::None);

    card.rateByKey(10);
    EXPECT_EQ(stored().rating, 10);
}

TEST_F(AnswerCardModelTest, TellsWhatChangedAndNoMore) {
    AnswerCardModel& card = showGeneration();
    change([](ModelAnswer& answer) { answer.state = AnswerState::running; });
    QSignalSpy answerChanged(&card, &AnswerCardModel::answerChanged);
    QSignalSpy judgementChanged(&card, &AnswerCardModel::judgementChanged);
    QSignalSpy arrived(&card, &AnswerCardModel::arrived);

    refresh();
    EXPECT_EQ(answerChanged.size() + judgementChanged.size() + arrived.size(), 0);

    change([](ModelAnswer& answer) { answer.state = AnswerState::done; });
    EXPECT_EQ(answerChanged.size(), 1);
    EXPECT_EQ(arrived.size(), 1);

    change([](ModelAnswer& answer) { answer.accepted = true; });
    EXPECT_EQ(answerChanged.size(), 1);
    EXPECT_EQ(judgementChanged.size(), 1);

    change([](ModelAnswer& answer) { answer.datasetID = UUID::random(); });
    EXPECT_EQ(judgementChanged.size(), 2);

    change([](ModelAnswer& answer) { answer.state = AnswerState::running; });
    change([](ModelAnswer& answer) { answer.state = AnswerState::failed; });
    EXPECT_EQ(arrived.size(), 1);
}

TEST_F(AnswerCardModelTest, AnAnswerRunAgainIsReadAgain) {
    const AnswerCardModel& card = showDecision();
    ASSERT_EQ(card.results().size(), 1);

    change([](ModelAnswer& answer) { answer.text = R"({"answers":{"wet":{"noul":0.88,"type":"noul"}}})"; });

    EXPECT_EQ(card.results()[0].toMap()[QStringLiteral("answer")], QStringLiteral("88% yes"));
}

TEST_F(AnswerCardModelTest, SaysAloudWhatHasCome) {
    AnswerCardModel& card = showDecision();
    EXPECT_EQ(card.spokenOutcome(), QStringLiteral("Zun: Warm"));
    change([](ModelAnswer& answer) { answer.state = AnswerState::failed; });
    EXPECT_EQ(card.spokenOutcome(), QStringLiteral("Zun: Couldn't get an answer"));
    change([](ModelAnswer& answer) {
        answer.state = AnswerState::done;
        answer.text = "Warm, I think.";
    });
    EXPECT_EQ(card.spokenOutcome(), QStringLiteral("Zun: Warm, I think."));
    change([](ModelAnswer& answer) { answer.text = std::string(100'000, 'x'); });
    EXPECT_EQ(card.spokenOutcome().size(), 305);
}

TEST_F(AnswerCardModelTest, SaysEveryResultWithItsQuestion) {
    const AnswerCardModel& card =
        show(harness.addDecision({makeChoice("tone", {"Warm", "Cold"}), makeScore("goodwill")},
                                 R"({"answers":{"goodwill":{"score":3.625,"type":"score"},)"
                                 R"("tone":{"choice":"Warm","type":"choice"}}})"));

    EXPECT_EQ(card.spokenOutcome(), QStringLiteral("Zun: goodwill: 3.62, tone: Warm"));
}

} // namespace
} // namespace quorl::test
