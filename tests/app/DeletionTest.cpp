#include "app/Harness.h"

using namespace quorl;
using namespace quorl::test;
using testing::ElementsAre;

namespace {

using Kind = PendingDelete::Kind;

class DeletionTest : public testing::Test {
protected:
    void SetUp() override {
        first = harness.addReadyModel("first", 0);
        second = harness.addReadyModel("second", 1);
        run = makeRun();
        answer = makeAnswer(run.id);
        harness.file().insertRun(run);
        harness.file().insertAnswer(answer);
        harness.start();
    }

    AppModel& model() { return harness.model(); }

    void remove(Kind kind, const UUID& id) {
        model().requestDelete({kind, id});
        model().confirmDelete();
    }

    void refuseDeletesFrom(const std::string& table) {
        harness.file().exec(("CREATE TRIGGER refuse BEFORE DELETE ON " + table +
                             " BEGIN SELECT RAISE(ABORT, 'held fast'); END")
                                .c_str());
    }

    Harness harness;
    ModelProfile first;
    ModelProfile second;
    QuorlRun run;
    ModelAnswer answer;
};

TEST_F(DeletionTest, AConfirmationIsKnownByKindAndTarget) {
    const UUID id = UUID::random();

    EXPECT_EQ((PendingDelete{Kind::model, id}.id()), "model-" + id.text());
    EXPECT_EQ((PendingDelete{Kind::category, id}.id()), "category-" + id.text());
    EXPECT_EQ((PendingDelete{Kind::run, id}.id()), "run-" + id.text());
    EXPECT_EQ((PendingDelete{Kind::example, id}.id()), "example-" + id.text());
    EXPECT_EQ((PendingDelete{Kind::batch, id}.id()), "batch-" + id.text());
}

TEST_F(DeletionTest, ARequestOnlyAsks) {
    model().requestDelete({Kind::run, run.id});

    EXPECT_EQ(*model().pendingDelete, (PendingDelete{Kind::run, run.id}));
    EXPECT_NE(model().library.findRun(run.id), nullptr);
}

TEST_F(DeletionTest, AConfirmationWithoutARequestDoesNothing) {
    model().confirmDelete();

    EXPECT_EQ(model().library.models().size(), 2u);
}

TEST_F(DeletionTest, ADeletedModelTakesItsKeyAndItsPlaceInTheDraftWithIt) {
    ASSERT_TRUE(model().draftModelIDs->contains(first.id));

    remove(Kind::model, first.id);

    EXPECT_THAT(model().library.models(), ElementsAre(second));
    EXPECT_THAT(harness.file().loadModels(), ElementsAre(second));
    EXPECT_FALSE(harness.keychain.items.contains({"com.quorltest.app", first.id.text()}));
    EXPECT_FALSE(model().draftModelIDs->contains(first.id));
    EXPECT_EQ(*model().selectedModelID, second.id);
    EXPECT_EQ(*model().secretFlags.find(first.id), true); // the entry stays
    EXPECT_FALSE(model().pendingDelete->has_value());
}

TEST_F(DeletionTest, DeletingTheLastModelLeavesNoSelection) {
    remove(Kind::model, first.id);
    remove(Kind::model, second.id);

    EXPECT_FALSE(model().selectedModelID->has_value());
}

TEST_F(DeletionTest, DeletingAnotherModelKeepsTheSelection) {
    remove(Kind::model, second.id);

    EXPECT_EQ(*model().selectedModelID, first.id);
}

TEST_F(DeletionTest, AModelThatTheFileKeepsIsGoneFromMemory) {
    refuseDeletesFrom("models");

    remove(Kind::model, first.id);

    EXPECT_EQ(*model().alertMessage, "held fast");
    EXPECT_EQ(model().library.findModel(first.id), nullptr);
    EXPECT_EQ(harness.file().loadModels().size(), 2u);
}

TEST_F(DeletionTest, ACategoryWithAChildIsRefusedEvenIfItIsAlsoInUse) {
    model().addCategory("Parent", std::nullopt);
    const UUID parent = **model().selectedCategoryID;
    model().addCategory("Child", parent);
    QuorlRun inCategory = makeRun();
    inCategory.categoryID = parent;
    harness.file().insertRun(inCategory);

    model().requestDelete({Kind::category, parent});

    EXPECT_EQ(*model().alertMessage, "Remove its subcategories first.");
    EXPECT_FALSE(model().pendingDelete->has_value());
}

TEST_F(DeletionTest, ACategoryThatARunOrAnExampleNamesIsRefused) {
    model().addCategory("Runs", std::nullopt);
    QuorlRun inCategory = makeRun();
    inCategory.categoryID = **model().selectedCategoryID;
    harness.file().insertRun(inCategory);
    model().addCategory("Examples", std::nullopt);
    DatasetExample example = makeExample();
    example.categoryID = **model().selectedCategoryID;
    harness.file().insertDataset(example);

    for (const auto& used : {inCategory.categoryID, example.categoryID}) {
        model().alertMessage = std::nullopt;
        model().requestDelete({Kind::category, *used});
        EXPECT_EQ(*model().alertMessage, "Comparisons or dataset rows still use this category.");
        EXPECT_FALSE(model().pendingDelete->has_value());
    }
}

TEST_F(DeletionTest, ACheckThatFailsIsNoObstacle) {
    model().addCategory("A", std::nullopt);
    harness.file().exec("DROP TABLE dataset");

    model().requestDelete({Kind::category, **model().selectedCategoryID});

    EXPECT_TRUE(model().pendingDelete->has_value());
}

TEST_F(DeletionTest, ADeletedCategoryLeavesDraftAndSelection) {
    model().addCategory("A", std::nullopt);
    const UUID id = **model().selectedCategoryID;
    model().draftCategoryID = id;

    remove(Kind::category, id);

    EXPECT_TRUE(model().library.categories().empty());
    EXPECT_TRUE(harness.file().loadCategories().empty());
    EXPECT_FALSE(model().draftCategoryID->has_value());
    EXPECT_FALSE(model().selectedCategoryID->has_value());
}

TEST_F(DeletionTest, ADeletedRunTakesItsAnswersAndReturnsToTheDraft) {
    harness.file().insertDataset(makeExample(answer.id));
    harness.start();
    model().activeRunID = run.id;
    model().destination = RunScreen{run.id};

    remove(Kind::run, run.id);

    EXPECT_EQ(model().library.findRun(run.id), nullptr);
    EXPECT_TRUE(model().library.answersOfRun(run.id).empty());
    EXPECT_TRUE(harness.file().loadRuns().empty());
    EXPECT_TRUE(harness.file().loadAnswers().empty());
    EXPECT_FALSE(model().activeRunID->has_value());
    EXPECT_EQ(*model().destination, Destination(Screen::draft));
    EXPECT_EQ(model().library.dataset().size(), 1u); // examples stay
    EXPECT_EQ(harness.file().loadDataset().size(), 1u);
}

TEST_F(DeletionTest, DeletingARunThatIsNotOnTheScreenMovesNothing) {
    model().activeRunID = UUID::random();
    model().destination = Screen::history;

    remove(Kind::run, run.id);

    EXPECT_TRUE(model().activeRunID->has_value());
    EXPECT_EQ(*model().destination, Destination(Screen::history));
}

TEST_F(DeletionTest, ARunThatTheFileKeepsIsGoneFromMemory) {
    refuseDeletesFrom("runs");

    remove(Kind::run, run.id);

    EXPECT_EQ(*model().alertMessage, "held fast");
    EXPECT_EQ(model().library.findRun(run.id), nullptr);
    EXPECT_EQ(harness.file().loadRuns().size(), 1u);
}

// A batch of two runs, which are to be deleted while they run.
class DeletionUnderWayTest : public DeletionTest {
protected:
    void SetUp() override {
        DeletionTest::SetUp();
        for (QuorlRun* each : {&one, &two}) {
            each->batchID = batch.id;
            harness.file().insertRun(*each);
        }
        batch.status = BatchStatus::running;
        harness.file().saveBatch(batch);
        harness.start();
        model().library.replaceBatch(batch); // which the start has found done
        makeRunning(one);
        makeRunning(two);
    }

    void makeRunning(const QuorlRun& asked) {
        ModelAnswer running = makeAnswer(asked.id);
        running.state = AnswerState::running;
        model().library.replaceAnswer(running);
    }

    BatchStatus status() { return model().library.findBatch(batch.id)->status; }

    QuorlBatch batch = makeBatch();
    QuorlRun one = makeRun();
    QuorlRun two = makeRun();
};

TEST_F(DeletionUnderWayTest, TheLastRunningRunOfABatchEndsTheBatch) {
    harness.file().setBatchStatus(batch.id, BatchStatus::running);

    remove(Kind::run, two.id);
    EXPECT_EQ(status(), BatchStatus::running);

    remove(Kind::run, one.id);
    EXPECT_EQ(status(), BatchStatus::done);
    EXPECT_EQ(harness.file().loadBatches()[0].status, BatchStatus::done);
}

TEST_F(DeletionUnderWayTest, ARunWhoseBatchIsGoneIsDeletedAllTheSame) {
    model().library.removeBatch(batch.id);

    remove(Kind::run, one.id);

    EXPECT_EQ(model().library.findRun(one.id), nullptr);
    EXPECT_EQ(model().alertMessage->value_or(""), "");
}

class DeletionOfABatchTest : public DeletionTest {
protected:
    void SetUp() override {
        DeletionTest::SetUp();
        batch = makeBatch();
        inBatch = makeRun();
        inBatch.batchID = batch.id;
        harness.file().saveBatch(batch);
        harness.file().insertRun(inBatch);
        harness.file().insertAnswer(makeAnswer(inBatch.id));
        harness.start();
    }

    QuorlBatch batch;
    QuorlRun inBatch;
};

TEST_F(DeletionOfABatchTest, ItTakesItsRunsAndTheirAnswersAndNoOther) {
    model().selectedBatchID = batch.id;

    remove(Kind::batch, batch.id);

    EXPECT_TRUE(model().library.batches().empty());
    EXPECT_EQ(model().library.findRun(inBatch.id), nullptr);
    EXPECT_TRUE(model().library.answersOfRun(inBatch.id).empty());
    EXPECT_NE(model().library.findRun(run.id), nullptr);
    EXPECT_TRUE(harness.file().loadBatches().empty());
    EXPECT_EQ(harness.file().loadRuns().size(), 1u);
    EXPECT_EQ(harness.file().loadAnswers().size(), 1u);
    EXPECT_FALSE(model().selectedBatchID->has_value());
}

TEST_F(DeletionOfABatchTest, ARunOfItOnTheScreenGoesToTheBatchesAndTheActiveRunStays) {
    model().activeRunID = inBatch.id;
    model().destination = RunScreen{inBatch.id};

    remove(Kind::batch, batch.id);

    EXPECT_EQ(*model().destination, Destination(Screen::batches));
    EXPECT_EQ(*model().activeRunID, inBatch.id);
}

TEST_F(DeletionOfABatchTest, AnotherRunOnTheScreenStays) {
    model().destination = RunScreen{run.id};

    remove(Kind::batch, batch.id);

    EXPECT_EQ(*model().destination, Destination(RunScreen{run.id}));
}

TEST_F(DeletionTest, ARemovedExampleUnlinksItsAnswerAndKeepsItsJudgements) {
    DatasetExample example = makeExample(answer.id);
    answer.datasetID = example.id;
    answer.accepted = true;
    answer.rating = 7;
    harness.file().insertDataset(example);
    harness.file().updateJudgment(answer);
    harness.start();

    remove(Kind::example, example.id);

    EXPECT_TRUE(model().library.dataset().empty());
    EXPECT_TRUE(harness.file().loadDataset().empty());
    answer.datasetID.reset();
    EXPECT_EQ(*model().library.findAnswer(answer.id), answer);
    EXPECT_THAT(harness.file().loadAnswers(), ElementsAre(answer));
}

TEST_F(DeletionTest, AnExampleWhoseAnswerIsGoneOrLinkedElsewhereIsJustRemoved) {
    const DatasetExample orphan = makeExample();
    const DatasetExample other = makeExample(answer.id);
    answer.datasetID = UUID::random();
    harness.file().insertDataset(orphan);
    harness.file().insertDataset(other);
    harness.file().updateJudgment(answer);
    harness.start();

    remove(Kind::example, orphan.id);
    remove(Kind::example, other.id);

    EXPECT_TRUE(model().library.dataset().empty());
    EXPECT_EQ(*model().library.findAnswer(answer.id), answer);
    EXPECT_FALSE(model().alertMessage->has_value());
}

TEST_F(DeletionTest, AnExampleMayBeRemovedByAReferenceIntoTheLibrary) {
    const DatasetExample example = makeExample(answer.id);
    answer.datasetID = example.id;
    harness.file().insertDataset(example);
    harness.file().updateJudgment(answer);
    harness.start();

    model().removeExample(model().library.dataset().front().id);

    EXPECT_TRUE(model().library.dataset().empty());
    EXPECT_FALSE(model().library.findAnswer(answer.id)->datasetID.has_value());
}

TEST_F(DeletionTest, AnUnknownExampleIsPassedOver) {
    remove(Kind::example, UUID::random());

    EXPECT_FALSE(model().alertMessage->has_value());
}

} // namespace
