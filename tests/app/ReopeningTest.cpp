#include "app/Harness.h"
#include "decision/Veritor.h"

using namespace quorl;
using namespace quorl::test;
using testing::ElementsAre;

namespace {

DecisionQuestion makeQuestion(const std::string& instructions) {
    DecisionQuestion question = DecisionQuestion::starter();
    question.instructions = instructions;
    question.options = {{UUID::random(), "Refund", "money back"}, {UUID::random(), "Wait", ""}};
    return question;
}

class ReopeningTest : public testing::Test {
protected:
    void SetUp() override { harness.file().saveModel(makeModel()); }

    AppModel& model() { return harness.model(); }

    QuorlRun insert(QuorlRun run, int answers = 0) {
        harness.file().insertRun(run);
        for (int position = 0; position < answers; ++position) {
            const ModelAnswer answer = makeAnswer(run.id, position);
            harness.file().insertAnswer(answer);
            asked.insert(answer.modelID);
        }
        return run;
    }

    // A decision batch with a run for each text, one millisecond apart.
    std::vector<QuorlRun> insertBatch(const std::vector<std::string>& texts, int answers = 0) {
        const QuorlBatch batch = makeBatch();
        harness.file().saveBatch(batch);
        std::vector<QuorlRun> runs;
        for (const std::string& text : texts) {
            QuorlRun run = makeRun(QuorlKind::decision);
            run.batchID = batch.id;
            run.questionsJSON = Veritor::archive({makeQuestion(text)});
            run.createdAt += std::chrono::duration<double>(0.001) * static_cast<double>(runs.size());
            runs.push_back(insert(run, answers));
        }
        return runs;
    }

    [[nodiscard]] std::vector<std::string> lineTexts() {
        std::vector<std::string> texts;
        for (const BulkQuestion& line : *model().draftBulkQuestions)
            texts.push_back(line.text);
        return texts;
    }

    Harness harness;
    std::set<UUID> asked; // the models of all answers
};

TEST_F(ReopeningTest, ARunIsShownWithTheDraftAsItWasAsked) {
    const Category parent = makeCategory("Support");
    const Category child = makeCategory("Parcels", parent.id);
    harness.file().saveCategory(parent);
    harness.file().saveCategory(child);
    const auto questions = std::vector{makeQuestion("What now?"), makeQuestion("And then?")};
    QuorlRun run = makeRun(QuorlKind::decision);
    run.systemPrompt = "";
    run.categoryID = child.id;
    run.scoringMode = ScoringMode::scale;
    run.questionsJSON = Veritor::archive(questions);
    insert(run, 2);
    harness.start();
    model().setKind(QuorlKind::generation);
    model().draftIsBulk = true;
    model().destination = Screen::history;

    model().openComparison(run);

    EXPECT_EQ(*model().draftKind, QuorlKind::decision);
    EXPECT_EQ(*model().draftPrompt, run.prompt);
    EXPECT_EQ(*model().draftSystem, ""); // not the kind's default
    EXPECT_EQ(*model().draftCategoryID, child.id);
    EXPECT_EQ(*model().draftCategoryText, "Support");
    EXPECT_EQ(*model().draftSubcategoryText, "Parcels");
    EXPECT_EQ(*model().draftQuestions, questions);
    EXPECT_EQ(*model().draftScoring, ScoringMode::scale);
    EXPECT_EQ(*model().draftModelIDs, asked);
    EXPECT_FALSE(*model().draftIsBulk);
    EXPECT_EQ(*model().activeRunID, run.id);
    EXPECT_FALSE(model().activeBatchID->has_value());
    EXPECT_EQ(*model().destination, Destination(Screen::draft));
    EXPECT_EQ(harness.defaults.string("draft.prompt"), run.prompt);
    EXPECT_FALSE(harness.defaults.boolean("draft.bulk"));
}

TEST_F(ReopeningTest, ARunOfTheLibraryItselfIsOpenedAndStaysAsItIs) {
    const std::vector<QuorlRun> runs = insertBatch({"one", "two"}, 1);
    harness.start();

    model().openComparison(*model().library.findRun(runs[1].id));
    EXPECT_EQ(*model().activeRunID, runs[1].id);
    model().variation(*model().library.findRun(runs[1].id));

    EXPECT_EQ(*model().library.findRun(runs[1].id), runs[1]);
    EXPECT_EQ(harness.file().loadRuns().size(), 2u);
    EXPECT_EQ(model().draftQuestions->at(0).instructions, "two");
}

TEST_F(ReopeningTest, ARunOfABatchBringsTheWholeListBack) {
    const std::vector<QuorlRun> runs = insertBatch({"one", "two", "three"}, 1);
    harness.start();

    model().openComparison(runs[1]);

    EXPECT_TRUE(*model().draftIsBulk);
    EXPECT_TRUE(*model().bulkTemplateInitialized);
    EXPECT_EQ(*model().draftBulkTemplate, Veritor::restore(runs[1].questionsJSON).at(0));
    EXPECT_THAT(lineTexts(), ElementsAre("one", "two", "three"));
    EXPECT_NE(model().draftBulkQuestions->at(0).id, Veritor::restore(runs[0].questionsJSON).at(0).id);
    EXPECT_EQ(*model().activeRunID, runs[1].id);
    EXPECT_EQ(*model().activeBatchID, runs[1].batchID);
    EXPECT_EQ(model().draftModelIDs->size(), 1u);
    EXPECT_TRUE(harness.defaults.boolean("draft.bulk"));
    EXPECT_TRUE(harness.defaults.boolean("draft.bulkInitialized"));
}

TEST_F(ReopeningTest, AnOpenedBatchCanBeWalked) {
    const std::vector<QuorlRun> runs = insertBatch({"one", "two"});
    harness.start();
    model().openComparison(runs[0]);

    model().nextQuestion();
    EXPECT_EQ(*model().activeRunID, runs[1].id);

    model().nextQuestion();
    EXPECT_FALSE(model().activeRunID->has_value());
    EXPECT_THAT(lineTexts(), ElementsAre("one", "two"));
}

TEST_F(ReopeningTest, AGenerationOfABatchIsNoList) {
    const QuorlBatch batch = makeBatch();
    harness.file().saveBatch(batch);
    QuorlRun run = makeRun();
    run.batchID = batch.id;
    insert(run);
    harness.start();
    model().draftIsBulk = true;

    model().openComparison(run);

    EXPECT_FALSE(*model().draftIsBulk);
    EXPECT_EQ(*model().activeBatchID, batch.id);
    EXPECT_EQ(*model().draftKind, QuorlKind::generation);
    EXPECT_EQ(*model().draftSystem, run.systemPrompt);
}

TEST_F(ReopeningTest, ARunWhoseBatchIsGoneIsASingleQuestion) {
    QuorlRun run = makeRun(QuorlKind::decision);
    run.questionsJSON = Veritor::archive({makeQuestion("one")});
    run.batchID = UUID::random();
    insert(run);
    harness.start();
    model().draftIsBulk = true;

    model().openComparison(run);

    EXPECT_FALSE(*model().draftIsBulk);
    EXPECT_EQ(*model().activeBatchID, run.batchID);
    EXPECT_EQ(*model().draftQuestions, Veritor::restore(run.questionsJSON));
}

TEST_F(ReopeningTest, DamagedQuestionsLeaveTheDraftsOwn) {
    QuorlRun run = makeRun(QuorlKind::decision);
    run.questionsJSON = "[{";
    insert(run);
    harness.start();
    const auto questions = std::vector{makeQuestion("kept")};
    model().draftQuestions = questions;

    model().openComparison(run);
    EXPECT_EQ(*model().draftQuestions, questions);
    EXPECT_EQ(*model().activeRunID, run.id);

    model().variation(run);
    EXPECT_EQ(*model().draftQuestions, questions);
}

TEST_F(ReopeningTest, ALineWithDamagedQuestionsIsTheRunsPrompt) {
    const QuorlBatch batch = makeBatch();
    harness.file().saveBatch(batch);
    QuorlRun run = makeRun(QuorlKind::decision);
    run.batchID = batch.id;
    run.questionsJSON = "damaged";
    insert(run);
    harness.start();
    model().draftBulkTemplate = makeQuestion("before");

    model().openComparison(run);

    EXPECT_TRUE(*model().draftIsBulk);
    EXPECT_THAT(lineTexts(), ElementsAre(run.prompt));
    EXPECT_EQ(model().draftBulkTemplate->instructions, "");
    EXPECT_EQ(model().draftBulkTemplate->options.size(), 2u);
    EXPECT_EQ(model().draftBulkTemplate->options[0].label, "");
}

TEST_F(ReopeningTest, AVariationIsASingleQuestionOnAnEmptyScreen) {
    const Category category = makeCategory("Support");
    harness.file().saveCategory(category);
    std::vector<QuorlRun> runs = insertBatch({"one", "two"}, 1);
    harness.start();
    QuorlRun run = runs[0];
    run.categoryID = category.id;
    run.scoringMode = ScoringMode::scale;
    model().openComparison(runs[0]);
    const auto focus = *model().focusToken;
    const std::set<UUID> askedOfOne = *model().draftModelIDs;
    model().draftModelIDs = std::set<UUID>();
    model().destination = Screen::history;

    model().variation(run);

    EXPECT_FALSE(*model().draftIsBulk);
    EXPECT_EQ(*model().draftKind, QuorlKind::decision);
    EXPECT_EQ(*model().draftPrompt, run.prompt);
    EXPECT_EQ(*model().draftSystem, run.systemPrompt);
    EXPECT_EQ(*model().draftCategoryID, category.id);
    EXPECT_EQ(*model().draftCategoryText, "Support");
    EXPECT_EQ(*model().draftScoring, ScoringMode::scale);
    EXPECT_EQ(*model().draftQuestions, Veritor::restore(run.questionsJSON));
    EXPECT_EQ(*model().draftModelIDs, askedOfOne);
    EXPECT_FALSE(model().activeRunID->has_value());
    EXPECT_FALSE(model().activeBatchID->has_value());
    EXPECT_EQ(*model().destination, Destination(Screen::draft));
    EXPECT_EQ(*model().focusToken, focus + 1);
    EXPECT_FALSE(harness.defaults.boolean("draft.bulk"));
    EXPECT_EQ(harness.defaults.string("draft.scoring"), "scale");
}

TEST_F(ReopeningTest, WithoutAnswersTheChosenModelsStay) {
    const QuorlRun run = insert(makeRun());
    harness.start();
    const std::set<UUID> chosen{UUID::random()};
    model().draftModelIDs = chosen;

    model().variation(run);
    EXPECT_EQ(*model().draftModelIDs, chosen);

    model().openComparison(run);
    EXPECT_EQ(*model().draftModelIDs, chosen);
}

TEST_F(ReopeningTest, WithoutACategoryItsFieldsAreEmptied) {
    const QuorlRun run = insert(makeRun());
    harness.start();
    model().draftCategoryText = "Support";
    model().draftSubcategoryText = "Parcels";
    model().draftCategoryID = UUID::random();

    model().openComparison(run);

    EXPECT_FALSE(model().draftCategoryID->has_value());
    EXPECT_EQ(*model().draftCategoryText, "");
    EXPECT_EQ(*model().draftSubcategoryText, "");
}

} // namespace
