#include "app/Harness.h"
#include "decision/Veritor.h"

using namespace quorl;
using namespace quorl::test;
using testing::ElementsAre;

namespace {

constexpr const char* decisionDefault =
    "Answer directly. Put the decision first, then a short reason. Do not use tools.";
constexpr const char* generationDefault = "Answer directly. Do not use tools.";

DecisionQuestion makeQuestion(const std::string& instructions) {
    DecisionQuestion question = DecisionQuestion::starter();
    question.instructions = instructions;
    return question;
}

class DraftTest : public testing::Test {
protected:
    void SetUp() override {
        harness.file().saveModel(makeModel());
        harness.start();
    }

    AppModel& model() { return harness.model(); }
    FakeDefaults& defaults() { return harness.defaults; }

    Harness harness;
};

TEST_F(DraftTest, AFreshDraftHasItsInitialValues) {
    const DecisionQuestion& question = model().draftQuestions->at(0);

    EXPECT_EQ(*model().draftKind, QuorlKind::decision);
    EXPECT_EQ(*model().draftPrompt, "");
    EXPECT_EQ(*model().draftSystem, decisionDefault);
    EXPECT_EQ(model().draftQuestions->size(), 1u);
    EXPECT_EQ(question.options.size(), 2u);
    EXPECT_EQ(question.levels, std::vector<std::string>(2));
    EXPECT_EQ(*model().draftScoring, ScoringMode::binary);
    EXPECT_FALSE(*model().draftIsBulk);
    EXPECT_EQ(model().draftBulkQuestions->size(), 1u);
    EXPECT_EQ(model().draftBulkQuestions->at(0).text, "");
    EXPECT_EQ(model().draftBulkTemplate->type, DecisionQuestionType::choice);
    EXPECT_NE(model().draftBulkTemplate->id, question.id);
}

TEST_F(DraftTest, SwitchingAnUntouchedDraftBringsTheOtherKindsInstructions) {
    model().setKind(QuorlKind::generation);
    EXPECT_EQ(*model().draftSystem, generationDefault);

    model().setKind(QuorlKind::decision);
    EXPECT_EQ(*model().draftSystem, decisionDefault);
}

TEST_F(DraftTest, TheUsersOwnInstructionsSurviveTheSwitch) {
    model().draftSystem = "In verse.";

    model().setKind(QuorlKind::generation);

    EXPECT_EQ(*model().draftSystem, "In verse.");
    EXPECT_EQ(*model().draftKind, QuorlKind::generation);
}

TEST_F(DraftTest, BlankInstructionsGiveWayToTheNewDefault) {
    model().draftSystem = " \n ";

    model().setKind(QuorlKind::generation);

    EXPECT_EQ(*model().draftSystem, generationDefault);
}

TEST_F(DraftTest, EveryKeyIsWrittenInItsForm) {
    harness.clock.set(dateFromSeconds(5));
    const UUID category = UUID::random();
    const UUID chosen = UUID::random();
    model().draftKind = QuorlKind::generation;
    model().draftPrompt = "  as typed \n";
    model().draftSystem = "sys";
    model().draftCategoryText = " cat ";
    model().draftSubcategoryText = "sub";
    model().draftCategoryID = category;
    model().draftScoring = ScoringMode::scale;
    model().draftModelIDs = {chosen};
    model().draftIsBulk = true;
    model().bulkTemplateInitialized = true;
    defaults().writes.clear();

    model().persistDraft();

    EXPECT_THAT(defaults().writes,
                ElementsAre("draft.kind", "draft.prompt", "draft.system", "draft.categoryText",
                            "draft.subcategoryText", "draft.questions", "draft.category", "draft.scoring",
                            "draft.models", "draft.bulk", "draft.bulkQuestions", "draft.bulkTemplate",
                            "draft.bulkInitialized"));
    EXPECT_EQ(defaults().string("draft.kind"), "generation");
    EXPECT_EQ(defaults().string("draft.prompt"), "  as typed \n");
    EXPECT_EQ(defaults().string("draft.system"), "sys");
    EXPECT_EQ(defaults().string("draft.categoryText"), " cat ");
    EXPECT_EQ(defaults().string("draft.subcategoryText"), "sub");
    EXPECT_EQ(defaults().string("draft.questions"), Veritor::archive(*model().draftQuestions));
    EXPECT_EQ(defaults().string("draft.category"), category.text());
    EXPECT_EQ(defaults().string("draft.scoring"), "scale");
    EXPECT_EQ(defaults().strings("draft.models"), std::vector{chosen.text()});
    EXPECT_TRUE(defaults().boolean("draft.bulk"));
    EXPECT_EQ(defaults().bytes("draft.bulkQuestions"),
              R"([{"id":")" + model().draftBulkQuestions->at(0).id.text() + R"(","text":""}])");
    EXPECT_EQ(defaults().string("draft.bulkTemplate"), Veritor::archive({*model().draftBulkTemplate}));
    EXPECT_TRUE(defaults().boolean("draft.bulkInitialized"));
}

TEST_F(DraftTest, NoCategoryIsWrittenAsEmptyText) {
    model().persistDraft();

    EXPECT_EQ(defaults().string("draft.category"), "");
}

TEST_F(DraftTest, ARestartBringsBackEverythingButTheActiveRun) {
    model().setBulk(true);
    model().draftPrompt = "state";
    model().draftSystem = "";
    model().draftQuestions = {makeQuestion("one"), makeQuestion("two")};
    model().draftBulkQuestions = {{UUID::random(), "line"}};
    model().draftScoring = ScoringMode::scale;
    model().draftModelIDs = {UUID::random(), UUID::random()};
    model().activeRunID = UUID::random();
    model().persistDraft();
    const auto questions = *model().draftQuestions;
    const auto lines = *model().draftBulkQuestions;
    const auto form = *model().draftBulkTemplate;
    const auto ids = *model().draftModelIDs;

    harness.start();

    EXPECT_TRUE(*model().draftIsBulk);
    EXPECT_TRUE(*model().bulkTemplateInitialized);
    EXPECT_EQ(*model().draftPrompt, "state");
    EXPECT_EQ(*model().draftSystem, ""); // an empty stored text counts as a value
    EXPECT_EQ(*model().draftQuestions, questions);
    EXPECT_EQ(*model().draftBulkQuestions, lines);
    EXPECT_EQ(*model().draftBulkTemplate, form);
    EXPECT_EQ(*model().draftScoring, ScoringMode::scale);
    EXPECT_EQ(*model().draftModelIDs, ids);
    EXPECT_FALSE(model().activeRunID->has_value());
}

TEST_F(DraftTest, LoadingAKindDoesNotTouchTheInstructions) {
    defaults().setString("draft.kind", "generation");

    harness.start();

    EXPECT_EQ(*model().draftKind, QuorlKind::generation);
    EXPECT_EQ(*model().draftSystem, decisionDefault);
}

TEST_F(DraftTest, UnreadableKeysLeaveTheFieldsAsTheyAre) {
    defaults().setString("draft.kind", "other");
    defaults().setString("draft.scoring", "SCALE");
    defaults().setString("draft.questions", "[{\"id\":\"x\"}]");
    defaults().setString("draft.bulkTemplate", "[]");
    defaults().setBytes("draft.bulkQuestions", "[]");
    defaults().setString("draft.bulk", "true");
    defaults().setBoolean("draft.system", true);
    defaults().setString("draft.models", "not a list");

    harness.start();

    EXPECT_EQ(*model().draftKind, QuorlKind::decision);
    EXPECT_EQ(*model().draftScoring, ScoringMode::binary);
    EXPECT_EQ(model().draftQuestions->size(), 1u);
    EXPECT_EQ(model().draftBulkQuestions->size(), 1u);
    EXPECT_FALSE(*model().draftIsBulk);
    EXPECT_EQ(*model().draftSystem, decisionDefault);
}

TEST_F(DraftTest, BulkQuestionsThatDoNotDecodeAreIgnored) {
    defaults().setBytes("draft.bulkQuestions", R"([{"id":"x","text":"y"}])");

    harness.start();

    EXPECT_EQ(model().draftBulkQuestions->at(0).text, "");
}

TEST_F(DraftTest, APromptThatIsNoTextBecomesEmptyAndAnEmptyOneStaysEmpty) {
    defaults().setBoolean("draft.prompt", true);
    harness.start();
    EXPECT_EQ(*model().draftPrompt, "");

    defaults().setString("draft.prompt", "");
    harness.start();
    EXPECT_EQ(*model().draftPrompt, "");
}

TEST_F(DraftTest, ModelIdsThatAreNoIdentifiersAreSkipped) {
    const UUID id = UUID::random();
    defaults().setStrings("draft.models", {"x", id.text(), ""});

    harness.start();

    EXPECT_EQ(*model().draftModelIDs, std::set{id});
}

TEST_F(DraftTest, TheCategoryFieldsShowThePresentNamesOfAStoredCategory) {
    const Category parent = makeCategory("Parent");
    const Category child = makeCategory("Child", parent.id);
    harness.file().saveCategory(parent);
    harness.file().saveCategory(child);
    defaults().setString("draft.category", child.id.text());

    harness.start();
    EXPECT_EQ(*model().draftCategoryText, "Parent");
    EXPECT_EQ(*model().draftSubcategoryText, "Child");

    defaults().setString("draft.category", parent.id.text());
    harness.start();
    EXPECT_EQ(*model().draftCategoryText, "Parent");
    EXPECT_EQ(*model().draftSubcategoryText, "");
}

TEST_F(DraftTest, StoredCategoryTextsWinOverTheStoredCategory) {
    const Category category = makeCategory("Old");
    harness.file().saveCategory(category);
    defaults().setString("draft.category", category.id.text());
    defaults().setString("draft.subcategoryText", "typed");

    harness.start();

    EXPECT_EQ(*model().draftCategoryText, "");
    EXPECT_EQ(*model().draftSubcategoryText, "typed");
}

TEST_F(DraftTest, ACategoryWhoseParentIsGoneShowsItsOwnNameAlone) {
    const Category orphan = makeCategory("Orphan", UUID::random());
    harness.file().saveCategory(orphan);
    defaults().setString("draft.category", orphan.id.text());

    harness.start();

    EXPECT_EQ(*model().draftCategoryText, "Orphan");
    EXPECT_EQ(*model().draftSubcategoryText, "");
}

TEST_F(DraftTest, ADeletedCategoryStaysSetWithEmptyTexts) {
    const UUID gone = UUID::random();
    defaults().setString("draft.category", gone.text());

    harness.start();

    EXPECT_EQ(*model().draftCategoryID, gone);
    EXPECT_EQ(*model().draftCategoryText, "");
    EXPECT_EQ(*model().draftSubcategoryText, "");
}

TEST_F(DraftTest, TheFirstSwitchToBulkTakesTheFormAndTheTextsOfTheQuestions) {
    model().draftQuestions = {makeQuestion("one"), makeQuestion("two"), makeQuestion("three")};

    model().setBulk(true);

    EXPECT_EQ(*model().draftBulkTemplate, model().draftQuestions->at(0));
    std::vector<std::string> texts;
    for (const BulkQuestion& item : *model().draftBulkQuestions)
        texts.push_back(item.text);
    EXPECT_THAT(texts, ElementsAre("one", "two", "three"));
    EXPECT_TRUE(defaults().boolean("draft.bulk"));
    EXPECT_TRUE(defaults().boolean("draft.bulkInitialized"));
}

TEST_F(DraftTest, ALaterSwitchToBulkKeepsTheEditedList) {
    model().setBulk(true);
    model().draftBulkQuestions = {{UUID::random(), "edited"}};
    model().setBulk(false);
    EXPECT_FALSE(*model().draftIsBulk);

    model().setBulk(true);

    EXPECT_EQ(model().draftBulkQuestions->at(0).text, "edited");
}

TEST_F(DraftTest, ASwitchToBulkWithoutQuestionsLeavesAnEmptyListAndABlankForm) {
    model().draftQuestions = {};

    model().setBulk(true);

    EXPECT_TRUE(model().draftBulkQuestions->empty());
    EXPECT_EQ(model().draftBulkTemplate->options.size(), 2u);
    EXPECT_EQ(model().draftBulkTemplate->instructions, "");
}

TEST_F(DraftTest, ASwitchToBulkTurnsAGenerationIntoADecision) {
    model().setKind(QuorlKind::generation);

    model().setBulk(true);

    EXPECT_EQ(*model().draftKind, QuorlKind::decision);
    EXPECT_EQ(*model().draftSystem, decisionDefault);
}

TEST_F(DraftTest, SwitchingBulkShowsACleanCompareScreen) {
    model().activeRunID = UUID::random();
    const auto focus = *model().focusToken;

    model().setBulk(false);

    EXPECT_FALSE(model().activeRunID->has_value());
    EXPECT_EQ(*model().focusToken, focus + 1);
}

TEST_F(DraftTest, ANewComparisonHidesTheAnswersAndKeepsTheQuestion) {
    model().draftPrompt = "kept";
    model().destination = Screen::history;
    model().activeRunID = UUID::random();
    model().activeBatchID = UUID::random();
    defaults().writes.clear();

    model().newComparison();

    EXPECT_EQ(*model().destination, Destination(Screen::draft));
    EXPECT_FALSE(model().activeRunID->has_value());
    EXPECT_FALSE(model().activeBatchID->has_value());
    EXPECT_EQ(*model().focusToken, 1);
    EXPECT_EQ(*model().draftPrompt, "kept");
    EXPECT_TRUE(defaults().writes.empty());
}

TEST_F(DraftTest, TogglingAModelTwiceLeavesTheSelectionAndPersistsEachTime) {
    const UUID id = UUID::random();

    model().toggleDraftModel(id);
    EXPECT_TRUE(model().draftModelIDs->contains(id));
    EXPECT_EQ(defaults().strings("draft.models"), std::vector{id.text()});
    model().toggleDraftModel(id);
    EXPECT_FALSE(model().draftModelIDs->contains(id));
}

} // namespace
